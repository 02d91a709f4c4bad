#include "frmSettings.h"

#include "clsRegistry.h"
#include "core/app/CoreApplication.h"

#include <QDir>

namespace tessaly {

namespace {
const QString NormalFolderHeading = QStringLiteral("Select A Folder"); // the picker panel's usual heading
const QString BrowseCaption = QStringLiteral("...");                   // a browse button's caption
const QString CloseCaption = QStringLiteral("<");                      // a browse button whose picker is open
} // namespace

frmSettings::frmSettings(CoreApplication& app)
    : Form(app, QString::fromLatin1(FormName)), txtDBLocation(add(ControlKind::TextBox, QStringLiteral("txtDBLocation"))),
      cmdDBLocation(add(ControlKind::CommandButton, QStringLiteral("cmdDBLocation"))),
      Text1(add(ControlKind::TextBox, QStringLiteral("Text1"))),
      cmdMainFileStore(add(ControlKind::CommandButton, QStringLiteral("cmdMainFileStore"))),
      Text2(add(ControlKind::TextBox, QStringLiteral("Text2"))),
      cmdTemFileStore(add(ControlKind::CommandButton, QStringLiteral("cmdTemFileStore"))),
      Text3(add(ControlKind::TextBox, QStringLiteral("Text3"))),
      cmdTemplatesFolder(add(ControlKind::CommandButton, QStringLiteral("cmdTemplatesFolder"))),
      txtZoom(add(ControlKind::TextBox, QStringLiteral("txtZoom"))),
      cboInformation(add(ControlKind::ComboBox, QStringLiteral("cboInformation"))),
      cboAddress(add(ControlKind::ComboBox, QStringLiteral("cboAddress"))),
      txtCopyright(add(ControlKind::TextBox, QStringLiteral("txtCopyright"))),
      cmdSave(add(ControlKind::CommandButton, QStringLiteral("cmdSave"))),
      cmdCancel(add(ControlKind::CommandButton, QStringLiteral("cmdCancel"))),
      PIC1(add(ControlKind::PictureBox, QStringLiteral("PIC1"))),
      lblFolderHeading(add(ControlKind::Label, QStringLiteral("lblFolderHeading"))),
      Drive1(add(ControlKind::DriveList, QStringLiteral("Drive1"))),
      Dir1(add(ControlKind::DirList, QStringLiteral("Dir1"))), app_(app) {
    buildLayout();
    onForm(QStringLiteral("Load"), [this](EventArgs&) { Form_Load(); });
    on(QStringLiteral("cmdDBLocation"), QStringLiteral("Click"), [this](Control&, EventArgs&) { cmdDBLocation_Click(); });
    on(QStringLiteral("cmdMainFileStore"), QStringLiteral("Click"),
       [this](Control& c, EventArgs&) { folderButton_Click(c, QStringLiteral("1")); });
    on(QStringLiteral("cmdTemFileStore"), QStringLiteral("Click"),
       [this](Control& c, EventArgs&) { folderButton_Click(c, QStringLiteral("2")); });
    on(QStringLiteral("cmdTemplatesFolder"), QStringLiteral("Click"),
       [this](Control& c, EventArgs&) { folderButton_Click(c, QStringLiteral("3")); });
    on(QStringLiteral("Dir1"), QStringLiteral("Click"), [this](Control&, EventArgs&) { Dir1_Changed(); });
    on(QStringLiteral("Dir1"), QStringLiteral("Change"), [this](Control&, EventArgs&) { Dir1_Changed(); });
    on(QStringLiteral("Drive1"), QStringLiteral("Change"),
       [this](Control&, EventArgs&) { Dir1.set(QStringLiteral("Path"), Drive1.prop(QStringLiteral("Drive"))); });
    on(QStringLiteral("cmdSave"), QStringLiteral("Click"), [this](Control&, EventArgs&) { cmdSave_Click(); });
    on(QStringLiteral("cmdCancel"), QStringLiteral("Click"), [this](Control&, EventArgs&) { app_.unload(*this); });
}

void frmSettings::buildLayout() {
    setCaption(QStringLiteral("Settings"));
    setSize(7800, 9600, 7680, 9120);
    auto label = [this](const char* name, const QString& caption, int left, int top, int width, int height) {
        Control& l = add(ControlKind::Label, QString::fromLatin1(name));
        l.setCaption(caption);
        l.move(left, top, width, height);
        return &l;
    };
    label("lblHeading", QStringLiteral("Software Settings"), 240, 120, 7200, 360)->setProp(QStringLiteral("FontBold"), true);
    label("lblSubHeading", QStringLiteral("Edit the default settings the software uses."), 240, 480, 7200, 300);
    label("lblWarning",
          QStringLiteral("WARNING Chaning the following settings may cause your software to stop working correctly."),
          240, 840, 7200, 480)
        ->setProp(QStringLiteral("ForeColor"), 255u);
    label("lblDBLocation", QStringLiteral("Database Location:"), 240, 1440, 2200, 300);
    txtDBLocation.move(2520, 1410, 4380, 315);
    cmdDBLocation.move(6960, 1410, 480, 315);
    cmdDBLocation.setCaption(BrowseCaption);
    cmdDBLocation.setToolTipText(QStringLiteral("Click to change the location of the database"));
    label("lblMainFileStore", QStringLiteral("Main File Store:"), 240, 1920, 2200, 300);
    Text1.move(2520, 1890, 4380, 315);
    cmdMainFileStore.move(6960, 1890, 480, 315);
    cmdMainFileStore.setCaption(BrowseCaption);
    cmdMainFileStore.setToolTipText(QStringLiteral("Click to change the location of the main file store"));
    label("lblTempFileStore", QStringLiteral("Temp File Store:"), 240, 2400, 2200, 300);
    Text2.move(2520, 2370, 4380, 315);
    cmdTemFileStore.move(6960, 2370, 480, 315);
    cmdTemFileStore.setCaption(BrowseCaption);
    cmdTemFileStore.setToolTipText(QStringLiteral("Click to change the location of the Temp file store"));
    label("lblTemplatesFolder", QStringLiteral("Objects Templates Folder:"), 240, 2880, 2200, 300);
    Text3.move(2520, 2850, 4380, 315);
    cmdTemplatesFolder.move(6960, 2850, 480, 315);
    cmdTemplatesFolder.setCaption(BrowseCaption);
    cmdTemplatesFolder.setToolTipText(QStringLiteral("Click to change the location of the Objects Templates folder"));
    label("lblZoom", QStringLiteral("Default Page Zoom:"), 240, 3360, 2200, 300);
    txtZoom.move(2520, 3330, 1200, 315);
    label("lblVisual", QStringLiteral("Visual Preferences For Pro Project Drawings Only"), 240, 3960, 7200, 300)
        ->setProp(QStringLiteral("FontBold"), true);
    label("lblInformation", QStringLiteral("Display Plan Information:"), 240, 4440, 2200, 300);
    cboInformation.move(2520, 4410, 1200, 315);
    cboInformation.addItem(QStringLiteral("Yes"));
    cboInformation.addItem(QStringLiteral("No"));
    label("lblAddress", QStringLiteral("Display Site Address:"), 240, 4920, 2200, 300);
    cboAddress.move(2520, 4890, 1200, 315);
    cboAddress.addItem(QStringLiteral("Yes"));
    cboAddress.addItem(QStringLiteral("No"));
    label("lblCopyright", QStringLiteral("Copyright Text:"), 240, 5400, 2200, 300);
    txtCopyright.move(2520, 5370, 4920, 315);
    cmdSave.setCaption(QStringLiteral("Save"));
    cmdSave.setToolTipText(QStringLiteral("Save Changes and close settings"));
    cmdSave.move(4560, 8520, 1320, 420);
    cmdCancel.setCaption(QStringLiteral("Cancel"));
    cmdCancel.setToolTipText(QStringLiteral("Cancel changes and close settings"));
    cmdCancel.move(6000, 8520, 1320, 420);
    PIC1.setVisible(false);
    PIC1.move(1830, 6135, 3885, 2280);
    lblFolderHeading.setCaption(NormalFolderHeading);
    lblFolderHeading.setProp(QStringLiteral("Container"), QStringLiteral("PIC1"));
    lblFolderHeading.move(60, 30, 3765, 255);
    Drive1.setProp(QStringLiteral("Container"), QStringLiteral("PIC1"));
    Drive1.move(60, 300, 3765, 315);
    Dir1.setProp(QStringLiteral("Container"), QStringLiteral("PIC1"));
    Dir1.move(60, 660, 3765, 1560);
}

void frmSettings::Form_Load() {
    Drive1.setProp(QStringLiteral("Drive"), QDir::rootPath());
    Dir1.setProp(QStringLiteral("Path"), app_.home.appPath());
    txtCopyright.setText(app_.gCopyrightText);
    cboAddress.setText(app_.gDisplayAddress);
    cboInformation.setText(app_.gDisplayPlanData);
    txtDBLocation.setText(app_.gDatabaseLocation);
    Text1.setText(app_.gFileStore);
    Text2.setText(app_.gTempFileStore);
    Text3.setText(app_.gTemplateFolder);
    txtZoom.setText(QString::number(app_.gDefaultPageZoom));
}

void frmSettings::cmdDBLocation_Click() {
    FileDialogRequest request;
    request.filter = QStringLiteral("Tessaly Database (*.mdb)|*.mdb");
    request.defaultExt = QStringLiteral(".mdb");
    request.title = QStringLiteral("Locate The Tessaly Software Database");
    request.initialFile = QStringLiteral("KORV.mdb");
    request.initialDir = app_.home.appPath();
    // The dialog's file name is taken however it ended: after a cancel it is
    // the file name it started with.
    txtDBLocation.setText(app_.ui.openDialog(request).value_or(request.initialFile));
}

void frmSettings::folderButton_Click(Control& button, const QString& target) {
    Control* browse[] = {&cmdDBLocation, &cmdMainFileStore, &cmdTemFileStore, &cmdTemplatesFolder};
    if (PIC1.visible()) {
        PIC1.setVisible(false);
        button.setCaption(BrowseCaption);
        for (Control* b : browse)
            b->setEnabled(true);
        lblFolderHeading.setCaption(NormalFolderHeading);
        return;
    }
    FolderTarget = target;
    PIC1.move(1830, 6135, 3885, 2280);
    PIC1.setVisible(true);
    button.setCaption(CloseCaption);
    for (Control* b : browse)
        b->setEnabled(b == &button);
}

Control& frmSettings::folderTargetBox() {
    if (FolderTarget == QLatin1String("2"))
        return Text2;
    if (FolderTarget == QLatin1String("3"))
        return Text3;
    return Text1;
}

void frmSettings::Dir1_Changed() {
    if (FolderTarget.isEmpty())
        return;
    folderTargetBox().setText(Dir1.prop(QStringLiteral("Path")).toString());
}

void frmSettings::cmdSave_Click() {
    {
        clsRegistry gRegistry(app_.machineSettings);
        auto write = [&](const char* name, const QString& value) {
            gRegistry.SetKeyValue(MachineKey, QString::fromLatin1(name), value, clsRegistry::REG_SZ);
        };
        write("DB_Location", txtDBLocation.text());
        write("FileStore", Text1.text());
        write("TempFileStore", Text2.text());
        write("CopyrightText", txtCopyright.text());
        write("DisplayAddress", cboAddress.text());
        write("DisplayPlanData", cboInformation.text());
        write("DefaultPageZoom", txtZoom.text());
        write("TemplateFolder", Text3.text() + QStringLiteral("\\"));
    }
    app_.ui.msgBox(QStringLiteral("In order for the changes to take effect,\nIt is necessary to re-start the program"),
                   mb::Critical, AppTitle);
    if (Form* main = app_.loaded(QStringLiteral("frmMain")))
        app_.unload(*main);
    app_.unload(*this);
}

} // namespace tessaly
