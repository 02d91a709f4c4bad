#include "CanvasEventSink.h"

#include "canvas/api/POLARDraw.h"
#include "core/forms/Form.h"

namespace tessaly {

namespace {
canvas::POLARDraw* engineOf(const std::weak_ptr<AutoObject>& weak) {
    const AutoPtr o = weak.lock();
    return dynamic_cast<canvas::POLARDraw*>(o.get());
}
} // namespace

CanvasEventSink::CanvasEventSink(Control& control) : control_(control), canvas_(control.inner) {
    if (canvas::POLARDraw* c = engineOf(canvas_))
        c->addEventSink(this);
}

CanvasEventSink::~CanvasEventSink() {
    if (canvas::POLARDraw* c = engineOf(canvas_))
        c->removeEventSink(this);
}

void CanvasEventSink::plain(const char* event, QVariantList args) {
    control_.form().raiseEvent(control_, QString::fromLatin1(event), args);
}

void CanvasEventSink::mouse(const char* event, int& button, int& shift, float& x, float& y) {
    QVariantList args{button, shift, x, y};
    control_.form().raiseEvent(control_, QString::fromLatin1(event), args);
    button = args.value(0).toInt();
    shift = args.value(1).toInt();
    x = args.value(2).toFloat();
    y = args.value(3).toFloat();
}

void CanvasEventSink::MouseDown(int& button, int& shift, float& x, float& y) {
    mouse("MouseDown", button, shift, x, y);
}

void CanvasEventSink::MouseMove(int& button, int& shift, float& x, float& y) {
    mouse("MouseMove", button, shift, x, y);
}

void CanvasEventSink::MouseUp(int& button, int& shift, float& x, float& y) {
    mouse("MouseUp", button, shift, x, y);
}

void CanvasEventSink::KeyDown(int& keyCode, int& shift) {
    QVariantList args{keyCode, shift};
    control_.form().raiseEvent(control_, QStringLiteral("KeyDown"), args);
    keyCode = args.value(0).toInt();
    shift = args.value(1).toInt();
}

void CanvasEventSink::ShapeAdded(int a, int id) {
    plain("ShapeAdded", {a, id});
}

void CanvasEventSink::ShapeFinished(int a, int id) {
    plain("ShapeFinished", {a, id});
}

void CanvasEventSink::SelectionChanged(int id) {
    plain("SelectionChanged", {id});
}

void CanvasEventSink::SelectionCleared() {
    plain("SelectionCleared");
}

void CanvasEventSink::ShapeChanged() {
    plain("ShapeChanged");
}

void CanvasEventSink::ShapeMoved(int a, int b) {
    plain("ShapeMoved", {a, b});
}

void CanvasEventSink::DrawingCancelled() {
    plain("DrawingCancelled");
}

void CanvasEventSink::fileError(const char* event, const QString& text, int code, bool& handled) {
    QVariantList args{text, code, handled};
    control_.form().raiseEvent(control_, QString::fromLatin1(event), args);
    handled = args.value(2).toBool();
}

void CanvasEventSink::FileReadError(const QString& text, int code, bool& handled) {
    fileError("FileReadError", text, code, handled);
}

void CanvasEventSink::FileWriteError(const QString& text, int code, bool& handled) {
    fileError("FileWriteError", text, code, handled);
}

} // namespace tessaly
