#include "Database.h"
#include "TestMain.h"

#include "core/db/Backend.h"
#include "core/db/Connection.h"
#include "core/db/ProjectDatabase.h"
#include "core/db/QuerySql.h"
#include "core/db/Recordset.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTextStream>
#include <atomic>

namespace tessaly::db::test {

namespace {

// Seconds the fixture script may take to bring a server up.
constexpr int ServerStartSeconds = 90;

QString scriptDir() {
    return QStringLiteral(TESSALY_TEST_SUPPORT_DIR);
}

} // namespace

namespace {
PostgresServer* started = nullptr; // the server object, once a test asked for it
}

PostgresServer& PostgresServer::instance() {
    static PostgresServer server;
    if (!started)
        tessaly::testing::atEnd(stopOwnPostgresServer);
    started = &server;
    return server;
}

void stopOwnPostgresServer() {
    if (started)
        started->stopOwnServer();
}

PostgresServer::PostgresServer() {
    const QString fixtureState = QStringLiteral(TESSALY_PG_STATE_DIR);
    if (readInfo(fixtureState))
        return;
    // Run on its own, without the CTest fixture: start a server for this process.
    ownState_ =
        QDir::tempPath() + QStringLiteral("/tessaly-pg-state-%1").arg(QCoreApplication::applicationPid());
    QProcess start;
    start.setProcessChannelMode(QProcess::MergedChannels);
    start.start(scriptDir() + QStringLiteral("/pg_start.sh"), {ownState_});
    const bool finished = start.waitForFinished(ServerStartSeconds * 1000);
    if (!finished || start.exitCode() != 0 || !readInfo(ownState_)) {
        problem_ = QStringLiteral("PostgreSQL test server could not be started: ") +
                   QString::fromLocal8Bit(start.readAll());
        return;
    }
}

void PostgresServer::stopOwnServer() {
    if (ownState_.isEmpty())
        return;
    QProcess::execute(scriptDir() + QStringLiteral("/pg_stop.sh"), {ownState_});
    QDir(ownState_).removeRecursively();
    ownState_.clear();
}

bool PostgresServer::readInfo(const QString& stateDir) {
    QFile f(stateDir + QStringLiteral("/info"));
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    QTextStream in(&f);
    while (!in.atEnd()) {
        const QString line = in.readLine();
        const QString key = line.section(QLatin1Char('='), 0, 0);
        const QString value = line.section(QLatin1Char('='), 1);
        if (key == QLatin1String("host"))
            host_ = value;
        else if (key == QLatin1String("port"))
            port_ = value;
        else if (key == QLatin1String("user"))
            user_ = value;
        else if (key == QLatin1String("database"))
            database_ = value;
    }
    return !port_.isEmpty();
}

QString PostgresServer::connectionString(const QString& schema) const {
    QString s = QStringLiteral("Provider=PostgreSQL;Data Source=%1:%2/%3;User ID=%4")
                    .arg(host_, port_, database_, user_);
    if (!schema.isEmpty())
        s += QStringLiteral(";Schema=") + schema;
    return s;
}

void DbTest::SetUp() {
    if (GetParam() == Engine::Sqlite) {
        dir_ = std::make_unique<QTemporaryDir>();
        ASSERT_TRUE(dir_->isValid());
        databasePath_ = dir_->filePath(QStringLiteral("KORV.mdb"));
        ASSERT_TRUE(createProjectDatabase(databasePath_));
        connectionString_ = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") + databasePath_ +
                            QStringLiteral(";Persist Security Info=False;");
        return;
    }
    PostgresServer& server = PostgresServer::instance();
    ASSERT_TRUE(server.available()) << server.problem().toStdString();
    static std::atomic<int> counter{0};
    schema_ = QStringLiteral("t_%1_%2").arg(QCoreApplication::applicationPid()).arg(++counter);
    connectionString_ = server.connectionString(schema_);
    ASSERT_TRUE(createServerProjectDatabase(connectionString_));
}

void DbTest::TearDown() {
    if (!schema_.isEmpty()) {
        auto backend = openBackend(PostgresServer::instance().connectionString());
        backend->execute(QStringLiteral("DROP SCHEMA \"%1\" CASCADE").arg(schema_));
    }
}

QString DbTest::controlConnectionString() const {
    QString s = connectionString_;
    if (s.endsWith(QLatin1Char(';')))
        s.chop(1);
    return s;
}

std::string engineName(const ::testing::TestParamInfo<Engine>& info) {
    return info.param == Engine::Sqlite ? "SQLite" : "PostgreSQL";
}

int addClient(const QString& connectionString, const QString& name, const QString& address,
              const QString& postCode) {
    Connection c;
    c.Open(connectionString);
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Clients;"), c, adOpenDynamic, adLockOptimistic, adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("Client")) = name;
    rs.Fields(QStringLiteral("Address")) = address;
    rs.Fields(QStringLiteral("PostCode")) = postCode;
    rs.Update();
    const int id = rs.Fields(QStringLiteral("ClientID")).Value().toInt();
    rs.Close();
    return id;
}

int addSite(const QString& connectionString, int clientId, const QString& site, const QString& address) {
    Connection c;
    c.Open(connectionString);
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Sites WHERE (((Sites.ClientID)=%1));").arg(clientId), c,
            adOpenDynamic, adLockOptimistic, adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("ClientID")) = clientId;
    rs.Fields(QStringLiteral("Site")) = site;
    rs.Fields(QStringLiteral("Address")) = address;
    rs.Update();
    const int id = rs.Fields(QStringLiteral("SiteID")).Value().toInt();
    rs.Close();
    return id;
}

int countRows(const QString& connectionString, const QString& sql) {
    return static_cast<int>(querySql(connectionString, sql).size());
}

} // namespace tessaly::db::test
