#pragma once

#include "core/forms/Form.h"

namespace tessaly {

class CoreApplication;

// The settings window: the locations and visual preferences of the
// machine-wide store. Saving ends the program, which must restart to use them.
class frmSettings final : public Form {
public:
    static constexpr const char* FormName = "frmSettings";
    explicit frmSettings(CoreApplication& app);

    Control& txtDBLocation;
    Control& cmdDBLocation;
    Control& Text1;
    Control& cmdMainFileStore;
    Control& Text2;
    Control& cmdTemFileStore;
    Control& Text3;
    Control& cmdTemplatesFolder;
    Control& txtZoom;
    Control& cboInformation;
    Control& cboAddress;
    Control& txtCopyright;
    Control& cmdSave;
    Control& cmdCancel;
    Control& PIC1;
    Control& lblFolderHeading;
    Control& Drive1;
    Control& Dir1;

    // Which text box the open folder picker serves: "1", "2" or "3".
    QString FolderTarget;

private:
    void buildLayout();
    void Form_Load();
    void cmdDBLocation_Click();
    void folderButton_Click(Control& button, const QString& target);
    void Dir1_Changed();
    void cmdSave_Click();
    Control& folderTargetBox();

    CoreApplication& app_;
};

} // namespace tessaly
