#pragma once

#include "Database.h"
#include "MetafileTools.h"
#include "canvas/api/CanvasCodes.h"
#include "core/db/Connection.h"
#include "core/db/Recordset.h"
#include "core/files/FileSystem.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Vb.h"
#include "core/runtime/Waiter.h"
#include "output/mail/Mail.h"
#include "program/Program.h"
#include "workspace/Application.h"
#include "workspace/LateBound.h"
#include "workspace/frmMain.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <map>

namespace tessaly::test {

// The program on a fresh home, connected to the test's project database (on
// SQLite or PostgreSQL), with the main window up. The UI port's events are
// kept whole and as "kind:detail" texts.
class WindowTest : public db::test::DbTest {
protected:
    QTemporaryDir homeDir;
    ScriptedUiPort port;
    RecordingWaiter waiter;
    std::unique_ptr<Application> app;
    frmMain* main = nullptr;
    QList<QJsonObject> raw;
    QStringList events;

    void SetUp() override {
        DbTest::SetUp();
        ASSERT_TRUE(homeDir.isValid());
        const AppHome home(homeDir.path());
        installMail(home);
        ASSERT_TRUE(QDir().mkpath(home.fileStoreDir()));
        port.onEvent = [this](const QJsonObject& e) {
            raw << e;
            const QString kind = e[QStringLiteral("event")].toString();
            QString detail;
            if (kind == QLatin1String("msgbox"))
                detail = e[QStringLiteral("text")].toString();
            else if (kind == QLatin1String("pointer"))
                detail = QString::number(e[QStringLiteral("value")].toInt());
            else if (kind == QLatin1String("show") || kind == QLatin1String("unload"))
                detail = e[QStringLiteral("form")].toString();
            events << kind + QLatin1Char(':') + detail;
        };
        app = program::makeApplication(port, waiter, home);
        app->gDatabaseLocation = isSqlite() ? databasePath() : connectionString();
        app->gConnectionString = connectionString();
        app->OpenConnection();
        app->gFileStore = home.fileStoreDir();
        app->gTempFileStore = home.tempFileStoreDir();
        main = &app->form<frmMain>();
        waiter.waits.clear();
        events.clear();
        raw.clear();
    }

    void TearDown() override {
        app.reset();
        DbTest::TearDown();
    }

    QString home() const { return homeDir.path(); }

    // Runs one SQL statement that changes rows.
    void sql(const QString& statement) {
        db::Recordset rs;
        rs.Open(statement, *app->gConnection, db::adOpenDynamic, db::adLockOptimistic, db::adCmdText);
    }
    QVariant scalar(const QString& query) {
        db::Recordset rs;
        rs.Open(query, *app->gConnection, db::adOpenDynamic, db::adLockReadOnly, db::adCmdText);
        return rs.EOF_() ? QVariant() : rs.value(0);
    }

    // Rows are added by the program's own idiom: AddNew, the fields, Update;
    // the new row is read back with its key.
    int addRow(const QString& table, const QString& key, const QVariantMap& fields) {
        db::Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM %1;").arg(table), *app->gConnection, db::adOpenDynamic,
                db::adLockOptimistic, db::adCmdText);
        rs.AddNew();
        for (auto it = fields.constBegin(); it != fields.constEnd(); ++it)
            rs.setValue(it.key(), it.value());
        rs.Update();
        const int id = rs.value(key).toInt();
        rs.Close();
        return id;
    }
    int addClient(const QString& name, const QString& contact, const QString& email) {
        return addRow(QStringLiteral("Clients"), QStringLiteral("ClientID"),
                      {{QStringLiteral("Client"), name},
                       {QStringLiteral("Contact"), contact},
                       {QStringLiteral("Email"), email}});
    }
    int addSite(int client, const QString& address) {
        return addRow(QStringLiteral("Sites"), QStringLiteral("SiteID"),
                      {{QStringLiteral("ClientID"), client},
                       {QStringLiteral("Site"), QStringLiteral("Site")},
                       {QStringLiteral("Address"), address}});
    }
    int addPlan(int site, const QString& description, bool coloured = false) {
        return addRow(QStringLiteral("SitePlans"), QStringLiteral("PlanID"),
                      {{QStringLiteral("SiteID"), site},
                       {QStringLiteral("PlanDescription"), description},
                       {QStringLiteral("ColourOutputCreated"), coloured ? -1 : 0}});
    }
    // The ColourOutputCreated flag of each plan, by PlanID, as -1 or 0.
    std::map<int, int> colourFlags() {
        std::map<int, int> out;
        db::Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM SitePlans;"), *app->gConnection, db::adOpenDynamic,
                db::adLockReadOnly, db::adCmdText);
        while (!rs.EOF_()) {
            out[rs.value(QStringLiteral("PlanID")).toInt()] =
                vb::toBool(rs.value(QStringLiteral("ColourOutputCreated"))) ? -1 : 0;
            rs.MoveNext();
        }
        return out;
    }

    // The plan's .emf and .wmf, written as the project save writes them: a
    // drawing on the main canvas saved as a metafile, then converted.
    QString savePlan(const QString& address, const QString& description) {
        const QString folder = app->gFileStore + QLatin1Char('\\') + address;
        QDir().mkpath(fs::toHost(folder));
        QVariantList shape{canvas::shape_type::Rectangle, 20, 20, 150, 100};
        app->gShapeList->call(QStringLiteral("AddShape"), shape);
        QVariantList ellipse{canvas::shape_type::Ellipse, 160, 40, 260, 160};
        app->gShapeList->call(QStringLiteral("AddShape"), ellipse);
        const QString s = folder + QLatin1Char('\\') + description;
        // The canvas takes host paths.
        late::call(main->canvas1(), "SaveFile",
                   {fs::toHost(s) + QStringLiteral(".emf"), canvas::save_format::Emf});
        app->printMod.ConvertEMFtoWMF(s + QStringLiteral(".emf"), s + QStringLiteral(".wmf"));
        waiter.waits.clear();
        events.clear();
        raw.clear();
        return s;
    }

    static QByteArray read(const QString& logicPath) { return readFile(fs::toHost(logicPath)); }

    void click(Form& form, const char* control) {
        form.raiseEvent(form.control(QString::fromLatin1(control)), QStringLiteral("Click"));
    }

    QStringList messageBoxes() const {
        QStringList out;
        for (const QString& e : events)
            if (e.startsWith(QLatin1String("msgbox:")))
                out << e.mid(7);
        return out;
    }
    QList<QJsonObject> eventsOf(const QString& kind) const {
        QList<QJsonObject> out;
        for (const QJsonObject& e : raw)
            if (e[QStringLiteral("event")].toString() == kind)
                out << e;
        return out;
    }
};

} // namespace tessaly::test
