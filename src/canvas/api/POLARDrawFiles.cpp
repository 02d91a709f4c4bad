#include "POLARDraw.h"

#include "canvas/engine/ToolController.h"
#include "canvas/io/PdrFormat.h"
#include "canvas/model/ShapeTypes.h"
#include "canvas/render/Renderer.h"
#include "core/runtime/RuntimeError.h"

#include <QBuffer>
#include <QImage>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QSaveFile>
#include <cmath>

#include "metafile/EmfPaintDevice.h"

namespace tessaly::canvas {

namespace {
constexpr double MmPerInch = 25.4;
const QString EmfDescription = QStringLiteral("Tessaly drawing");
} // namespace

// --- files ------------------------------------------------------------------

void POLARDraw::loadFile(const QString& hostPath) {
    pdr::Contents contents;
    try {
        contents = pdr::readFile(hostPath);
    } catch (const RuntimeError& e) {
        const bool handled = raiseFileReadError(e.description(), e.number());
        if (!handled && dialogHost_)
            dialogHost_->fileError(e.description(), e.number());
        throw;
    }
    Scope scope(*this);
    tools_->reset();
    editor_ = {};
    doc_.load(std::move(contents.shapes), std::move(contents.state));
    const bool hadSelection = !selection_.empty();
    selection_.clear();
    if (hadSelection)
        raiseSelectionCleared();
    modified_ = false;
    requestRepaint();
}

void POLARDraw::reportWriteError(const QString& text, int code) {
    const bool handled = raiseFileWriteError(text, code);
    if (!handled && dialogHost_)
        dialogHost_->fileError(text, code);
}

void POLARDraw::saveFile(const QString& hostPath, int format) {
    switch (format) {
    case save_format::Pdr: {
        const QString error = pdr::writeFile(hostPath, drawing().shapes(), drawing().state());
        if (!error.isEmpty())
            reportWriteError(error, err::PathFileAccess);
        else
            modified_ = false;
        return;
    }
    case save_format::Emf:
        writeEmf(hostPath);
        return;
    case save_format::Bmp:
        writeImage(hostPath, "BMP");
        return;
    case save_format::Png:
        writeImage(hostPath, "PNG");
        return;
    default:
        raiseError(err::InvalidProcedureCall, QStringLiteral("File format %1 is not supported").arg(format));
    }
}

QImage POLARDraw::renderImage(double dpi) {
    const PageSettings& page = drawing().state().page;
    double k = dpi / MmPerInch;
    const double pixels = page.width * k * page.height * k;
    if (pixels > ExportMaxPixels)
        k *= std::sqrt(ExportMaxPixels / pixels);
    const int w = std::max(1, static_cast<int>(std::lround(page.width * k)));
    const int h = std::max(1, static_cast<int>(std::lround(page.height * k)));
    QImage image(w, h, QImage::Format_RGB32);
    const int dotsPerMetre = static_cast<int>(std::lround(k * 1000));
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);
    image.fill(Qt::white);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    render(p, QRectF(0, 0, w, h), QRectF(), RenderOptions{false, false, false});
    return image;
}

void POLARDraw::writeImage(const QString& hostPath, const char* format) {
    const QImage image = renderImage(ExportDpi);
    QSaveFile file(hostPath);
    if (!file.open(QIODevice::WriteOnly) || !image.save(&file, format) || !file.commit()) {
        file.cancelWriting();
        reportWriteError(
            QStringLiteral("The picture file %1 cannot be written: %2").arg(hostPath, file.errorString()),
            err::PathFileAccess);
    }
}

void POLARDraw::writeEmf(const QString& hostPath) {
    const PageSettings& page = drawing().state().page;
    metafile::EmfPaintDevice device(QSizeF(page.width, page.height), 96, EmfDescription);
    {
        QPainter p(&device);
        const double k = device.logicalDpiX() / MmPerInch;
        render(p, QRectF(0, 0, page.width * k, page.height * k), QRectF(),
               RenderOptions{false, false, false});
    }
    try {
        device.save(hostPath);
    } catch (const RuntimeError& e) {
        reportWriteError(e.description(), e.number());
    }
}

// --- rendering ----------------------------------------------------------------

void POLARDraw::render(QPainter& painter, const QRectF& pageRectInDevice, const QRectF& visiblePageArea,
                       const RenderOptions& options) const {
    RenderScene scene;
    scene.drawing = &drawing();
    scene.paperDecoration = options.paperDecoration;
    scene.showGrid = options.gridAndGuides && (settings_.showGrid || gridVisible_);
    scene.showGuides = options.gridAndGuides && settings_.showGuides;
    scene.showConnectors = options.selection && settings_.showConnectors;
    if (options.selection) {
        scene.selection = &selection_;
        scene.handles = tools_->handles();
        scene.feedback = &tools_->feedback();
    }
    Renderer::render(painter, scene, pageRectInDevice, visiblePageArea);
}

void POLARDraw::renderView(QPainter& painter) const {
    const PageSettings& page = drawing().state().page;
    const double k = view_.pixelsPerMm();
    const QPointF origin = view_.pageToClient(QPointF(0, 0));
    painter.setRenderHint(QPainter::Antialiasing);
    render(painter, QRectF(origin, QSizeF(page.width * k, page.height * k)), view_.visiblePage(),
           RenderOptions{});
}

void POLARDraw::printTo(QPagedPaintDevice& device) {
    const PageSettings& page = drawing().state().page;
    QPainter p(&device);
    p.setRenderHint(QPainter::Antialiasing);
    const double kx = device.logicalDpiX() / MmPerInch;
    const double ky = device.logicalDpiY() / MmPerInch;
    render(p, QRectF(0, 0, page.width * kx, page.height * ky), QRectF(), RenderOptions{false, false, false});
}

// --- description ----------------------------------------------------------------

QVariantList POLARDraw::describeShapes() const {
    QVariantList out;
    for (const ShapePtr& sp : drawing().shapes()) {
        const ShapeData& s = *sp;
        const ShapeStyle& st = s.st();
        QVariantMap m;
        m[QStringLiteral("id")] = s.id;
        m[QStringLiteral("type")] = static_cast<int>(s.type);
        m[QStringLiteral("name")] = s.name;
        m[QStringLiteral("left")] = static_cast<int>(std::nearbyint(s.left));
        m[QStringLiteral("top")] = static_cast<int>(std::nearbyint(s.top));
        m[QStringLiteral("right")] = static_cast<int>(std::nearbyint(s.right));
        m[QStringLiteral("bottom")] = static_cast<int>(std::nearbyint(s.bottom));
        m[QStringLiteral("filled")] = s.has(shape_flag::Filled);
        m[QStringLiteral("stroked")] = s.has(shape_flag::Stroked);
        m[QStringLiteral("fill")] =
            QVariantMap{{QStringLiteral("type"), st.fill.type},
                        {QStringLiteral("colour"), static_cast<int>(st.fill.colour)},
                        {QStringLiteral("back"), static_cast<int>(st.fill.backColour)},
                        {QStringLiteral("hatch"), st.fill.hatch},
                        {QStringLiteral("texture"), static_cast<bool>(st.fill.texture)}};
        m[QStringLiteral("line")] = QVariantMap{{QStringLiteral("style"), st.line.style},
                                                {QStringLiteral("colour"), static_cast<int>(st.line.colour)},
                                                {QStringLiteral("weight"), st.line.weight},
                                                {QStringLiteral("arrowStart"), st.line.arrowStart},
                                                {QStringLiteral("arrowEnd"), st.line.arrowEnd}};
        m[QStringLiteral("text")] = s.text();
        m[QStringLiteral("font")] = QVariantMap{{QStringLiteral("name"), st.font.name},
                                                {QStringLiteral("size"), st.font.size},
                                                {QStringLiteral("bold"), st.font.bold}};
        m[QStringLiteral("rotation")] = static_cast<int>(s.rotation);
        m[QStringLiteral("locks")] = QVariantMap{{QStringLiteral("a"), s.has(shape_flag::LockA)},
                                                 {QStringLiteral("b"), s.has(shape_flag::LockB)}};
        m[QStringLiteral("lens")] =
            QVariantMap{{QStringLiteral("active"), st.lens.active},
                        {QStringLiteral("type"), st.lens.type},
                        {QStringLiteral("percent"), st.lens.percent},
                        {QStringLiteral("start"), static_cast<int>(st.lens.startColour)},
                        {QStringLiteral("end"), static_cast<int>(st.lens.endColour)}};
        m[QStringLiteral("shadow")] = st.shadow.visible;
        if (s.extra && !s.extra->points.empty())
            m[QStringLiteral("points")] = static_cast<int>(s.extra->points.size());
        if (s.extra && !s.extra->children.empty())
            m[QStringLiteral("members")] = static_cast<int>(s.extra->children.size());
        out << m;
    }
    return out;
}

} // namespace tessaly::canvas
