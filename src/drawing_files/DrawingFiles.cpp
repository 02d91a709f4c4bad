#include "DrawingFiles.h"

#include "AutoBackup.h"
#include "FileCommands.h"
#include "PictureImport.h"
#include "frmImageConverter.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

namespace tessaly {

void registerDrawingFiles(Application& app) {
    app.registerForm(QString::fromLatin1(frmImageConverter::FormName), [](ApplicationBase& a) {
        return std::make_shared<frmImageConverter>(static_cast<Application&>(a));
    });
    app.extendForm(QString::fromLatin1(frmMain::FormName), [&app](Form& form) {
        auto& main = static_cast<frmMain&>(form);
        drawing_files::registerFileCommands(main, app);
        drawing_files::registerAutoBackup(main, app);
        drawing_files::registerPictureImport(main, app);
    });
}

} // namespace tessaly
