#include "ProjectsFixture.h"

#include "core/db/Ado.h"
#include "core/db/Connection.h"
#include "core/db/QuerySql.h"
#include "core/db/Recordset.h"
#include "program/Program.h"
#include "projects/frmClientSites.h"
#include "projects/frmNew.h"
#include "workspace/frmMain.h"

#include <QFile>
#include <QTextStream>

namespace tessaly::projects::test {

namespace {
const QString ConnectionStart = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=");
const QString ConnectionEnd = QStringLiteral(";Persist Security Info=False;");
} // namespace

void ProjectsTest::SetUp() {
    DbTest::SetUp();
    if (HasFatalFailure())
        return;
    program::installHome(home);
    app = program::makeApplication(port, waiter, home);
    port.onEvent = [this](const QJsonObject& e) {
        events.push_back(e);
        if (e[QStringLiteral("event")].toString() == QLatin1String("msgbox"))
            boxes << QStringLiteral("%1|%2|%3")
                         .arg(e[QStringLiteral("text")].toString())
                         .arg(e[QStringLiteral("flags")].toInt())
                         .arg(e[QStringLiteral("title")].toString());
    };
    ASSERT_TRUE(app->Main());
    Form& splash = app->form(QStringLiteral("frmSplash"));
    splash.raiseEvent(splash.control(QStringLiteral("Timer1")), QStringLiteral("Timer"));
    ASSERT_TRUE(isLoaded("frmMain"));
    // The project database of the test's engine: a server's connection is
    // named by a location of its own pairs, which override the file's.
    app->CloseDatabase();
    app->gDatabaseLocation = isSqlite() ? databasePath() : QStringLiteral(";") + connectionString();
    app->gConnectionString = ConnectionStart + app->gDatabaseLocation + ConnectionEnd;
    app->OpenConnection();
    boxes.clear();
    events.clear();
    waiter.waits.clear();
}

void ProjectsTest::TearDown() {
    app.reset();
    DbTest::TearDown();
}

frmMain& ProjectsTest::main() {
    return static_cast<frmMain&>(*app->loaded(QStringLiteral("frmMain")));
}

frmClientSites& ProjectsTest::openManager() {
    menu("mnuFile_OpenProject");
    return manager();
}

frmClientSites& ProjectsTest::manager() {
    Form* f = app->loaded(QStringLiteral("frmClientSites"));
    if (!f)
        throw std::runtime_error("the project manager is not loaded");
    return static_cast<frmClientSites&>(*f);
}

frmNew& ProjectsTest::clientWindow() {
    Form* f = app->loaded(QStringLiteral("frmNew"));
    if (!f)
        throw std::runtime_error("the client window is not loaded");
    return static_cast<frmNew&>(*f);
}

bool ProjectsTest::isLoaded(const char* form) const {
    return app->loaded(QString::fromLatin1(form)) != nullptr;
}

void ProjectsTest::click(Control& c) {
    if (!c.enabled())
        return;
    if (c.kind() == ControlKind::OptionButton) {
        app->dispatch([&] { c.setValue(1); });
        return;
    }
    app->dispatch([&] { c.form().raiseEvent(c, QStringLiteral("Click")); });
}

void ProjectsTest::click(Form& f, const char* control, int index) {
    click(f.control(QString::fromLatin1(control), index));
}

void ProjectsTest::type(Control& box, const QString& text) {
    app->dispatch([&] {
        box.form().setFocus(&box);
        box.setText(text);
    });
}

void ProjectsTest::blur(Control& box) {
    app->dispatch([&] {
        if (box.form().focused() == &box)
            box.form().setFocus(nullptr);
        else
            box.form().raiseEvent(box, QStringLiteral("LostFocus"));
    });
}

void ProjectsTest::choose(Control& list, int index) {
    app->dispatch([&] { list.setListIndex(index); });
}

void ProjectsTest::menu(const char* entry) {
    Control& c = main().control(QString::fromLatin1(entry));
    app->dispatch([&] { main().raiseEvent(c, QStringLiteral("Click")); });
}

int ProjectsTest::addClient(const QString& name, const QString& address, const QString& postCode) {
    return db::test::addClient(connectionString(), name, address, postCode);
}

int addRow(const QString& connectionString, const QString& table, const QString& keyField,
           const QVariantMap& fields) {
    db::Connection c;
    c.Open(connectionString);
    db::Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM %1;").arg(table), c, db::adOpenDynamic, db::adLockOptimistic,
            db::adCmdText);
    rs.AddNew();
    for (auto it = fields.begin(); it != fields.end(); ++it)
        rs.Fields(it.key()) = it.value();
    rs.Update();
    const int key = keyField.isEmpty() ? 0 : rs.Fields(keyField).Value().toInt();
    rs.Close();
    return key;
}

int ProjectsTest::addSite(int client, const QString& site, const QString& address, const QString& postCode) {
    return addRow(connectionString(), QStringLiteral("Sites"), QStringLiteral("SiteID"),
                  {{QStringLiteral("ClientID"), client},
                   {QStringLiteral("Site"), site},
                   {QStringLiteral("Address"), address},
                   {QStringLiteral("PostCode"), postCode}});
}

int ProjectsTest::addPlan(int site, const QString& description) {
    return addRow(connectionString(), QStringLiteral("SitePlans"), QStringLiteral("PlanID"),
                  {{QStringLiteral("SiteID"), site}, {QStringLiteral("PlanDescription"), description}});
}

QList<QVariantMap> ProjectsTest::rows(const QString& sql) const {
    return db::querySql(connectionString(), sql);
}

void ProjectsTest::execute(const QString& sql) const {
    db::Connection c;
    c.Open(connectionString());
    db::Recordset command;
    command.Open(sql, c, db::adOpenDynamic, db::adLockOptimistic, db::adCmdText);
}

QString ProjectsTest::storePath(const QString& relative) const {
    return home.fileStoreDir() + QLatin1Char('/') + relative;
}

QStringList ProjectsTest::logLines() const {
    QFile f(home.dir() + QStringLiteral("/ErrorLog.Log"));
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QStringList lines;
    QTextStream in(&f);
    while (!in.atEnd())
        lines << in.readLine();
    return lines;
}

std::vector<int> ProjectsTest::takeWaits() {
    std::vector<int> out = waiter.waits;
    waiter.waits.clear();
    return out;
}

QStringList ProjectsTest::takeBoxes() {
    QStringList out = boxes;
    boxes.clear();
    return out;
}

} // namespace tessaly::projects::test
