#pragma once

#include "canvas/engine/CanvasEvents.h"
#include "core/forms/Form.h"

namespace tessaly {

class Application;
class frmMain;

// "My Templates": the user's own template drawings, each a .pdr file in the
// template folder listed in TemplateFiles, shown and edited in the window's
// own canvas PD1. Symbols travel to and from the main canvas by the clipboard.
class frmMyTemplates final : public Form, private canvas::CanvasEvents {
public:
    static constexpr const char* FormName = "frmMyTemplates";
    explicit frmMyTemplates(Application& app);
    ~frmMyTemplates() override;

    Control& lblTemplate;
    Control& cboTemplate;
    Control& cmdNewTemplateFile;
    Control& cmdImport;
    Control& cmdSave;
    Control& cmdClose;
    Control& cmdCopy;
    Control& cmdCut;
    Control& cmdPaste;
    Control& cmdPasteBack;
    Control& PD1;

    // The name of the template in PD1; its file is gTemplateFolder + name + ".pdr".
    QString CurrentTemplate;

    // The list of cboTemplate from TemplateFiles, and a new row in it.
    void RefreshTemplateList();
    void AddTemplateRecord(const QString& name);
    // Saves the template in view, then loads the one cboTemplate names.
    void LoadTemplateFile();

private:
    void buildLayout();
    void registerMembers();
    void Form_Load();
    void Form_Resize();
    void cmdSave_Click();
    void cmdNewTemplateFile_Click();
    void cmdImport_Click();
    void cmdPasteBack_Click();
    void showLoadedTemplate();
    QString templatePath(const QString& name) const;
    void loadIntoCanvas(const QString& logicPath);

    // PD1's file errors.
    void FileReadError(const QString& text, int code, bool& handled) override;
    void FileWriteError(const QString& text, int code, bool& handled) override;

    Application& app_;
};

// Opens My Templates from the View menu.
void registerMyTemplatesCommand(frmMain& form, Application& app);

} // namespace tessaly
