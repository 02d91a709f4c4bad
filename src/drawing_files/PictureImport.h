#pragma once

#include "core/runtime/AutoObject.h"

#include <QString>

namespace tessaly {

class Application;
class frmMain;

namespace drawing_files {

// The filter of the import dialog.
inline const QString ImportFilter =
    QStringLiteral("Bitmap files (*.bmp)|*.bmp|JPEG files (*.jpg)|*.jpg|GIF files (*.gif)|*.gif|"
                   "Metafiles (*.wmf;*.emf)|*.wmf;*.emf|All Files (*.*)|*.*");
// What the import says of a file that is no picture it can take, and under which caption.
inline const QString ImportRefusedText =
    QStringLiteral("Tessaly Cannot Import The Image Type, Please convert it prior to import...");
inline const QString ImportRefusedCaption = QStringLiteral("Importing and external file");
// DrawingMode after an import: a value no drawing tool sets.
constexpr int16_t ImportDrawingMode = 5;

// The picture loader: a picture object (Width and Height in 0.01 mm) from a
// BMP, JPEG, GIF, PNG, WMF or EMF file. Error 53 for a missing file, 481 for
// one that is no such picture.
AutoPtr LoadPicture(const QString& path);

// Import Picture From File: the picture at the page's top-left corner.
void mnuFile_Import_Click(frmMain& main, Application& app);
// Convert Image And Import: the image converter, modal.
void mnuFile_Convert_Click(frmMain& main, Application& app);

// Registers both on the main window.
void registerPictureImport(frmMain& main, Application& app);

} // namespace drawing_files
} // namespace tessaly
