#include "PictureImport.h"

#include "canvas/api/CanvasChild.h"
#include "canvas/api/POLARDraw.h"
#include "canvas/model/CanvasPicture.h"
#include "core/common/CommonRoutines.h"
#include "core/files/FileSystem.h"
#include "core/runtime/Vb.h"
#include "drawing_files/frmImageConverter.h"
#include "workspace/Application.h"
#include "workspace/LateBound.h"
#include "workspace/frmMain.h"

namespace tessaly::drawing_files {

AutoPtr LoadPicture(const QString& path) {
    return std::make_shared<canvas::PictureObject>(canvas::CanvasPicture::fromFile(fs::toHost(path)));
}

void mnuFile_Import_Click(frmMain& main, Application& app) {
    const AutoPtr canvas = main.canvas1();
    // 1.
    const QString path = common::ShowOpenDialog(app, ImportFilter);
    if (path.isEmpty())
        return;
    // The trap stands behind step 9: a failure skips every step up to it, and
    // a failed load leaves AutoRedraw off.
    try {
        // 2.
        late::set(canvas, "AutoRedraw", false);
        // 3. A file that is no picture fails here.
        const AutoPtr picture = LoadPicture(path);
        // 4.
        const QVariant coordinateMode = late::get(canvas, "CoordinateMode");
        late::set(canvas, "CoordinateMode", canvas::coordinate_mode::Pixels);
        // 5.
        main.DrawingMode = ImportDrawingMode;
        // 6.
        const int32_t width = vb::toInt32(late::get(picture, "Width"));
        const int32_t height = vb::toInt32(late::get(picture, "Height"));
        // 7. The size in 0.01 mm serves as pixel coordinates: that is how an
        //    imported picture gets its size on the page.
        late::call(app.gShapeList, "AddPicture", {toVariant(picture), 0, 0, width, height});
        // 8.
        late::set(canvas, "CoordinateMode", coordinateMode);
        // 9.
        late::set(canvas, "AutoRedraw", true);
        late::call(canvas, "Redraw");
    } catch (const RuntimeError& e) {
        // Only the picture loader's refusal is worded; any other error passes.
        if (e.number() == err::InvalidPicture)
            app.ui.msgBox(ImportRefusedText, mb::Information, ImportRefusedCaption);
    }
}

void mnuFile_Convert_Click(frmMain&, Application& app) {
    app.show(app.form(QString::fromLatin1(frmImageConverter::FormName)), true);
}

void registerPictureImport(frmMain& main, Application& app) {
    main.on(QStringLiteral("mnuFile_Import"), QStringLiteral("Click"),
            [&main, &app](Control&, EventArgs&) { mnuFile_Import_Click(main, app); });
    main.on(QStringLiteral("mnuFile_Convert"), QStringLiteral("Click"),
            [&main, &app](Control&, EventArgs&) { mnuFile_Convert_Click(main, app); });
}

} // namespace tessaly::drawing_files
