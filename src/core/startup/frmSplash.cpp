#include "frmSplash.h"

#include "core/app/CoreApplication.h"
#include "core/common/CommonRoutines.h"
#include "core/settings/clsRegistry.h"

namespace tessaly {

namespace {
constexpr int SplashInterval = 2000; // milliseconds the splash stays before the main window
// The connection string around the database path.
const QString ConnectionPrefix = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=");
const QString ConnectionSuffix = QStringLiteral(";Persist Security Info=False;");
} // namespace

frmSplash::frmSplash(CoreApplication& app)
    : Form(app, QString::fromLatin1(FormName)), lblVersion(add(ControlKind::Label, QStringLiteral("lblVersion"))),
      Timer1(add(ControlKind::Timer, QStringLiteral("Timer1"))), app_(app) {
    setCaption(QString());
    setSize(6300, 3900, 6240, 3450);
    Control& title = add(ControlKind::Label, QStringLiteral("lblTitle"));
    title.setCaption(AppTitle);
    title.move(300, 600, 5700, 900);
    title.setProp(QStringLiteral("FontSize"), 36);
    Control& tag = add(ControlKind::Label, QStringLiteral("lblTagLine"));
    tag.setCaption(QStringLiteral("Site and floor plans, drawn to scale"));
    tag.move(300, 1500, 5700, 400);
    lblVersion.move(300, 2700, 5700, 300);
    Timer1.setProp(QStringLiteral("Interval"), SplashInterval);
    onForm(QStringLiteral("Load"), [this](EventArgs&) { Form_Load(); });
    on(QStringLiteral("Timer1"), QStringLiteral("Timer"), [this](Control&, EventArgs&) { Timer1_Timer(); });
}

void frmSplash::Form_Load() {
    int step = 0;
    try {
        ++step; // 1
        auto gRegistry = std::make_unique<clsRegistry>(app_.machineSettings);
        ++step; // 2
        lblVersion.setCaption(QStringLiteral("Tablet Edition, Version: ") + CoreApplication::versionText());
        ++step; // 3
        if (!common::FileExists(app_.gDatabaseLocation))
            app_.gDatabaseLocation.clear();
        ++step; // 4
        if (app_.gDatabaseLocation.isEmpty()) {
            FileDialogRequest request;
            request.filter = QStringLiteral("Site Plan Database (*.mdb)|*.mdb");
            app_.gDatabaseLocation = app_.ui.openDialog(request).value_or(QString());
            gRegistry->SetKeyValue(MachineKey, QStringLiteral("DB_Location"), app_.gDatabaseLocation,
                                   clsRegistry::REG_SZ);
        }
        ++step; // 5
        gRegistry.reset();
        ++step; // 6
        app_.gConnectionString = ConnectionPrefix + app_.gDatabaseLocation + ConnectionSuffix;
        ++step; // 7
        app_.OpenConnection();
        Timer1.setEnabled(true);
    } catch (const RuntimeError& e) {
        app_.ui.msgBox(QStringLiteral("An Error Occured In The Sub Form Load In Splash Screen: %1-%2 - %3")
                           .arg(e.number())
                           .arg(step)
                           .arg(e.description()),
                       mb::Critical, AppTitle);
    }
}

void frmSplash::Timer1_Timer() {
    try {
        Timer1.setEnabled(false);
        Form& main = app_.form(QStringLiteral("frmMain"));
        app_.show(main, false);
        app_.unload(*this);
    } catch (const RuntimeError& e) {
        app_.ui.msgBox(QStringLiteral("An Error Occured In The Timer Tick Process In Splash Screen: %1 - %2")
                           .arg(e.number())
                           .arg(e.description()),
                       mb::Critical, AppTitle);
    }
}

} // namespace tessaly
