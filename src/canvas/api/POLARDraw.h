#pragma once

#include "CanvasCodes.h"
#include "canvas/engine/CanvasDialogHost.h"
#include "canvas/engine/CanvasEvents.h"
#include "canvas/engine/ViewGeometry.h"
#include "canvas/model/Document.h"
#include "core/runtime/AutoObject.h"

#include <QVariantList>
#include <functional>
#include <memory>
#include <vector>

class QPainter;
class QPagedPaintDevice;

namespace tessaly::canvas {

class ToolController;
class Page;
class ViewList;
class View;
class ViewOptions;
class ShapeList;
class Selection;
class GuideList;

// Resolution of BMP and PNG exports of the whole page. Pages so large that
// the image would pass ExportMaxPixels are written at a lower resolution.
constexpr int ExportDpi = 150;
constexpr double ExportMaxPixels = 64.0 * 1024 * 1024;

// View switches and tool settings (View, ViewOptions).
struct ViewSettings {
    int toolMode = tool_mode::Select;
    int toolShapeType = shape_type::Rectangle;
    int toolOption = 0; // no variant of the draw tool
    int defaultToolMode = tool_mode::Select;
    bool showGrid = false;
    bool snapToGrid = false;
    bool showGuides = true;
    bool snapToGuides = false;
    bool showFlags[4] = {true, true, true, true};
    int measurementUnits = 1;
    bool allowErrorReporting = true;
    bool showConnectors = false;
};

// The in-place text editor: open on one shape with the text being edited.
// The widget shows an editor over the shape while `open` is true and hands
// the result to POLARDraw::commitTextEditor.
struct TextEditorState {
    bool open = false;
    int shapeId = 0;
    QString text;
};

// What render() draws besides the shapes.
struct RenderOptions {
    bool paperDecoration = true; // sheet outline and shadow
    bool gridAndGuides = true;   // by the View switches
    bool selection = true;       // handles and tool feedback
};

// The canvas control POLARDraw: a drawing (page, shapes, guide lines, tag)
// with its edit history, one view, the tools, the clipboard and the files.
//
// Headless: the widget sets the viewport size and screen origin, forwards
// input (screen pixel coordinates), paints with render() when asked through
// the repaint callback, and shows the text editor while textEditor().open.
// The object model of the program (Page, ViewList, View, ShapeList, ...)
// hangs below it, each object also reachable by name through AutoObject.
class POLARDraw : public AutoObject {
public:
    static std::shared_ptr<POLARDraw> create();
    ~POLARDraw() override;

    // --- object model -------------------------------------------------------
    std::shared_ptr<Page> page();
    std::shared_ptr<ViewList> views();
    std::shared_ptr<View> view();
    std::shared_ptr<ViewOptions> viewOptions();
    std::shared_ptr<ShapeList> shapes();
    std::shared_ptr<Selection> selection();
    std::shared_ptr<GuideList> horizontalGuides();
    std::shared_ptr<GuideList> verticalGuides();

    // --- properties ---------------------------------------------------------
    int zoom() const { return view_.zoom; }
    void setZoom(int percent);
    bool gridVisible() const { return gridVisible_; }
    void setGridVisible(bool on);
    int coordinateMode() const { return coordinateMode_; }
    void setCoordinateMode(int mode);
    bool modified() const { return modified_; }
    void setModified(bool on) { modified_ = on; }
    bool highlightEnabled = false;
    Colour highlightColour = 0;
    Colour highlightAltColour = 0;
    QString drawingTag() const { return doc_.drawing().state().drawingTag; }
    void setDrawingTag(const QString& tag);
    bool autoRedraw() const { return autoRedraw_; }
    void setAutoRedraw(bool on);

    // --- methods ------------------------------------------------------------
    // Replaces the drawing with a .pdr file (host path). A missing, damaged or
    // foreign file raises FileReadError and then run-time error 30001; the
    // drawing stays as it was. After a load Modified is false.
    void loadFile(const QString& hostPath);
    // Writes the drawing (host path) in a save_format. A failure raises
    // FileWriteError (and, when no handler dealt with it, the host's message);
    // the call itself returns normally, so that the file's absence tells.
    void saveFile(const QString& hostPath, int format);
    void undo();
    void redo();
    void cut();
    void copy();
    void paste();
    void refreshScreen();
    void redraw();
    void showPageSetup();
    void printDrawing(bool& showDialog);
    void showLineDialog();
    void showArrowsDialog();
    void showShadeDialog();
    void showPatternDialog();
    void showTextureDialog();
    void showShadowDialog();
    void showFontDialog();

    // The effects of the dialogs, on the selected shapes, one undo step each.
    void applyLineOptions(int style, Colour colour, int weight);
    void applyArrows(int start, int end, int size);
    void applyShade(Colour from, Colour to, int direction);
    void applyPattern(int hatchPattern, Colour fore, Colour back);
    void applyTexture(const PicturePtr& picture);
    void applyShadow(bool visible, Colour colour, int offsetX, int offsetY);
    void applyFont(const QString& name, int size, bool bold, bool italic = false);

    // Renders the page at true scale (1 page mm = 1 paper mm) from the top-left
    // corner of the device's paintable area.
    void printTo(QPagedPaintDevice& device);
    // Renders the whole page into an image at `dpi`.
    QImage renderImage(double dpi);

    // --- rendering and view -------------------------------------------------
    // Draws the page so that page mm (0,0)-(Width,Height) fills
    // `pageRectInDevice`; only shapes that meet `visiblePageArea` (mm; empty:
    // all) are drawn. Works on any paint device.
    void render(QPainter& painter, const QRectF& pageRectInDevice, const QRectF& visiblePageArea,
                const RenderOptions& options) const;
    // Draws what the window shows, at the current zoom and scroll.
    void renderView(QPainter& painter) const;
    const ViewGeometry& viewGeometry() const { return view_; }
    void setViewportSize(const QSize& size);
    void setScreenOrigin(const QPoint& origin) { view_.screenOrigin = origin; }
    QPointF pageToScreen(const QPointF& mm) const { return view_.pageToScreen(mm); }
    QPointF screenToPage(const QPointF& px) const { return view_.screenToPage(px); }
    void centerPage();
    void fitTo(int mode);
    void setScroll(const QPointF& pageTopLeftMm);

    // Called whenever the canvas wants to be painted again.
    void setRepaintCallback(std::function<void()> callback) { repaintCallback_ = std::move(callback); }
    // How many repaints the canvas has asked for.
    int repaintCount() const { return repaintCount_; }

    // --- input (screen pixel coordinates) ------------------------------------
    void mousePress(int button, int shift, double x, double y);
    void mouseMove(int button, int shift, double x, double y);
    void mouseRelease(int button, int shift, double x, double y);
    void mouseDoubleClick(int button, int shift, double x, double y);
    void keyPress(int keyCode, int shift);

    const TextEditorState& textEditor() const { return editor_; }
    void openTextEditor(int shapeId);
    void commitTextEditor(const QString& text);
    void cancelTextEditor();

    // --- events and host ----------------------------------------------------
    void addEventSink(CanvasEvents* sink);
    void removeEventSink(CanvasEvents* sink);
    void setDialogHost(CanvasDialogHost* host) { dialogHost_ = host; }

    // --- model access -------------------------------------------------------
    const Drawing& drawing() const { return doc_.drawing(); }
    const Document& document() const { return doc_; }
    ViewSettings& viewSettings() { return settings_; }
    const ViewSettings& viewSettings() const { return settings_; }
    const std::vector<int>& selectedIds() const { return selection_; }
    // Per shape in z-order: id, type, name, edges (page mm), formats; for tests and the script driver.
    QVariantList describeShapes() const;

    // --- used by the object model and the tools ------------------------------
    // A call into the canvas: nested scopes form one undo step and one repaint;
    // when the outermost ends, AutoRedraw left off by ShapeAdded handlers is turned on again.
    class Scope {
    public:
        explicit Scope(POLARDraw& canvas);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        POLARDraw& canvas_;
    };

    // Units of the coordinate mode from page mm, and back.
    double toUnits(double mm) const;
    double fromUnits(double units) const;
    int toUnitsInt(double mm) const;
    // The shape with `id`; error 5 when it is not on the page.
    ShapePtr shapeOrRaise(int id) const;
    // Applies `edit` to a copy of each shape and puts the copies in place (one step).
    void editShapes(const std::vector<int>& ids, const std::function<void(ShapeData&)>& edit);
    // Changes the style of each shape; shapes that shared a style share the new one.
    void editStyles(const std::vector<int>& ids, const std::function<void(ShapeStyle&)>& edit);
    void editPage(const std::function<void(PageState&)>& edit);
    // Adds a shape of `type` with the page-mm box; returns its id. Raises ShapeAdded when `announce`.
    int addShapeMm(int type, const QRectF& box, const QString& text = {}, bool announce = true);
    int addPictureMm(const PicturePtr& picture, const QRectF& box);
    // Adds a prepared shape (id assigned here), without events.
    int insertNewShape(ShapeData shape);
    void announceShapeAdded(int id);
    void announceShapeFinished(int id);
    void setSelection(std::vector<int> ids);
    void clearSelection();
    void selectAll();
    void deleteShapes(std::vector<int> ids);
    void moveShapes(const std::vector<int>& ids, double dxMm, double dyMm);
    void rotateShapes(const std::vector<int>& ids, int degrees);
    int groupShapes(const std::vector<int>& ids);
    void ungroupShapes(const std::vector<int>& ids);
    void convertToPolygon(const std::vector<int>& ids);
    void reorderShapes(const std::vector<int>& ids, int step);
    QRectF boundsOf(const std::vector<int>& ids) const;
    void requestRepaint();
    QString defaultName(int type, int id) const;

    // Event raising (all sinks, in order).
    void raiseMouseDown(int& button, int& shift, float& x, float& y);
    void raiseMouseMove(int& button, int& shift, float& x, float& y);
    void raiseMouseUp(int& button, int& shift, float& x, float& y);
    void raiseKeyDown(int& keyCode, int& shift);
    void raiseSelectionChanged(int id);
    void raiseSelectionCleared();
    void raiseShapeChanged();
    void raiseShapeMoved(int a, int b);
    void raiseDrawingCancelled();
    bool raiseFileReadError(const QString& text, int code);
    bool raiseFileWriteError(const QString& text, int code);

    ToolController& tools() { return *tools_; }
    const ToolController& tools() const { return *tools_; }

    // --- AutoObject ---------------------------------------------------------
    QString typeName() const override { return QStringLiteral("POLARDraw"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;
    // The names of the control's members, as memberNames gives them.
    static QStringList classMemberNames();

private:
    POLARDraw();
    void enter();
    void leave();
    void writeImage(const QString& hostPath, const char* format);
    void writeEmf(const QString& hostPath);
    void reportWriteError(const QString& text, int code);
    void pruneSelection();
    std::vector<int> selectionOrRaise() const;
    // The style of the first selected shape, which a dialog of the canvas
    // starts from; raises when nothing is selected or there is no host.
    ShapeStyle styleForDialog() const;
    void copyToSystemClipboard() const;

    Document doc_;
    ViewGeometry view_;
    ViewSettings settings_;
    std::vector<int> selection_;
    TextEditorState editor_;
    std::unique_ptr<ToolController> tools_;
    std::vector<CanvasEvents*> sinks_;
    CanvasDialogHost* dialogHost_ = nullptr;
    std::function<void()> repaintCallback_;
    int repaintCount_ = 0;
    bool repaintPending_ = false;
    int depth_ = 0;
    bool shapeAddedInCall_ = false;
    bool autoRedraw_ = true;
    bool modified_ = false;
    bool gridVisible_ = false;
    int coordinateMode_ = coordinate_mode::Page;

    std::shared_ptr<Page> page_;
    std::shared_ptr<ViewList> views_;
    std::shared_ptr<View> viewObject_;
    std::shared_ptr<ViewOptions> viewOptions_;
    std::shared_ptr<ShapeList> shapeList_;
    std::shared_ptr<Selection> selectionObject_;
    std::shared_ptr<GuideList> hGuides_;
    std::shared_ptr<GuideList> vGuides_;
};

} // namespace tessaly::canvas
