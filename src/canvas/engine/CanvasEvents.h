#pragma once

#include <QString>

namespace tessaly::canvas {

// The events of the canvas (POLARDraw). Every event is raised synchronously,
// before the call that caused it returns. Several sinks may be attached; each
// receives every event in the order they were attached. Arguments passed by
// reference may be changed by a handler; later sinks and the canvas see the
// change.
//
// Arguments:
// - button: 1 left, 2 right, 4 middle. shift: 1 Shift, 2 Ctrl, 4 Alt, added.
// - x, y of the mouse events: screen pixels (the widget's screen origin
//   included); ViewList.ScreenToClient and ViewList.ClientToPage turn them
//   into page units.
// - ShapeAdded / ShapeFinished: `a` is the shape's position in z-order
//   (from 1), `id` its id. ShapeAdded comes for every shape added by drawing,
//   AddShape, AddText, AddPicture and Paste; ShapeFinished only when a drawing
//   tool finishes a stroke, after ShapeAdded, with the new shape selected.
// - SelectionChanged: the id of the first selected shape.
// - ShapeMoved: `a`, `b` the move in whole units of the coordinate mode.
// - FileReadError / FileWriteError: the text, the error number, and
//   `handled`, which a handler sets to true when it has told the user.
class CanvasEvents {
public:
    virtual ~CanvasEvents() = default;

    virtual void MouseDown(int& /*button*/, int& /*shift*/, float& /*x*/, float& /*y*/) {}
    virtual void MouseMove(int& /*button*/, int& /*shift*/, float& /*x*/, float& /*y*/) {}
    virtual void MouseUp(int& /*button*/, int& /*shift*/, float& /*x*/, float& /*y*/) {}
    virtual void KeyDown(int& /*keyCode*/, int& /*shift*/) {}
    virtual void ShapeAdded(int /*a*/, int /*id*/) {}
    virtual void ShapeFinished(int /*a*/, int /*id*/) {}
    virtual void SelectionChanged(int /*id*/) {}
    virtual void SelectionCleared() {}
    virtual void ShapeChanged() {}
    virtual void ShapeMoved(int /*a*/, int /*b*/) {}
    virtual void DrawingCancelled() {}
    virtual void FileReadError(const QString& /*text*/, int /*code*/, bool& /*handled*/) {}
    virtual void FileWriteError(const QString& /*text*/, int /*code*/, bool& /*handled*/) {}
};

} // namespace tessaly::canvas
