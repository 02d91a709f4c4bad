#pragma once

#include "canvas/engine/CanvasEvents.h"

#include <QVariantList>
#include <memory>

namespace tessaly {

class Control;
class AutoObject;

// Passes the events of a canvas on to the form that holds it, as events of
// the canvas control ("POLARDraw1.MouseDown" and so on), through the form's
// dispatcher: an untrapped run-time error in a handler shows the default
// error box and never reaches the canvas. Arguments passed by reference come
// back from the handler into the canvas's event.
class CanvasEventSink final : public canvas::CanvasEvents {
public:
    // Attaches itself to the canvas engine behind `control`; detaches when destroyed.
    explicit CanvasEventSink(Control& control);
    ~CanvasEventSink() override;
    CanvasEventSink(const CanvasEventSink&) = delete;
    CanvasEventSink& operator=(const CanvasEventSink&) = delete;

    void MouseDown(int& button, int& shift, float& x, float& y) override;
    void MouseMove(int& button, int& shift, float& x, float& y) override;
    void MouseUp(int& button, int& shift, float& x, float& y) override;
    void KeyDown(int& keyCode, int& shift) override;
    void ShapeAdded(int a, int id) override;
    void ShapeFinished(int a, int id) override;
    void SelectionChanged(int id) override;
    void SelectionCleared() override;
    void ShapeChanged() override;
    void ShapeMoved(int a, int b) override;
    void DrawingCancelled() override;
    void FileReadError(const QString& text, int code, bool& handled) override;
    void FileWriteError(const QString& text, int code, bool& handled) override;

private:
    void mouse(const char* event, int& button, int& shift, float& x, float& y);
    void plain(const char* event, QVariantList args = {});
    void fileError(const char* event, const QString& text, int code, bool& handled);

    Control& control_;
    std::weak_ptr<AutoObject> canvas_;
};

} // namespace tessaly
