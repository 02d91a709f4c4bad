#pragma once

#include "Database.h"
#include "Printing.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "workspace/Application.h"

#include <QJsonObject>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>
#include <vector>

namespace tessaly {
class frmClientSites;
class frmMain;
class frmNew;
} // namespace tessaly

namespace tessaly::projects::test {

// A row added through the program's own idiom (open the table, AddNew, the
// fields, Update); returns the value of `keyField`, 0 when none is named.
int addRow(const QString& connectionString, const QString& table, const QString& keyField,
           const QVariantMap& fields);

// Tessaly started on a fresh, installed home, with its project database on
// the engine of the test's parameter: the home's own SQLite file, or a schema
// of its own on the loopback PostgreSQL server. The UI port's calls are kept,
// message boxes also as "text|flags|title" lines.
class ProjectsTest : public db::test::DbTest {
protected:
    void SetUp() override;
    void TearDown() override;

    QTemporaryDir homeDir;
    AppHome home{homeDir.path()};
    ScriptedUiPort port;
    RecordingWaiter waiter;
    std::unique_ptr<Application> app;
    std::vector<QJsonObject> events;
    QStringList boxes;

    frmMain& main();
    // The File menu's entry that opens the project manager.
    frmClientSites& openManager();
    frmClientSites& manager();
    frmNew& clientWindow();
    bool isLoaded(const char* form) const;

    // User input, each under the dispatcher as the desktop delivers it.
    void click(Control& c);
    void click(Form& f, const char* control, int index = -1);
    void type(Control& box, const QString& text); // focus, then the text
    void blur(Control& box);
    void choose(Control& list, int index);
    void menu(const char* entry); // a File menu entry of the main window

    // Rows through the program's own idiom, on the test's database.
    int addClient(const QString& name, const QString& address = {}, const QString& postCode = {});
    int addSite(int client, const QString& site, const QString& address, const QString& postCode = {});
    int addPlan(int site, const QString& description);
    QList<QVariantMap> rows(const QString& sql) const;
    // A statement that changes rows, run on a connection of the test's own.
    void execute(const QString& sql) const;

    // A path in the file store of the home, host form.
    QString storePath(const QString& relative) const;
    // The lines of ErrorLog.Log, none when it is missing.
    QStringList logLines() const;
    // The waits since the last call.
    std::vector<int> takeWaits();
    // The message boxes since the last call.
    QStringList takeBoxes();
};

} // namespace tessaly::projects::test
