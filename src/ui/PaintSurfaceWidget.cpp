// Picture boxes: one painted on by the logic (the colouring window's
// Picture1) shows its surface and reports the mouse in the box's scale; any
// other is the plain panel.
#include "ControlWidget.h"
#include "ViewUnits.h"
#include "output/colour/PaintSurface.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWidget>

namespace tessaly::ui {

namespace {

using colour::PaintSurface;

class PaintSurfaceWidget final : public QWidget {
public:
    PaintSurfaceWidget(Control& control, ViewSink& sink, QWidget* parent)
        : QWidget(parent), control_(control), sink_(sink) {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setMouseTracking(true);
        setCursor(Qt::CrossCursor);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        if (const PaintSurface* surface = PaintSurface::of(control_))
            painter.drawImage(0, 0, surface->image());
    }
    void mousePressEvent(QMouseEvent* e) override {
        report(QStringLiteral("MouseDown"), e, buttonOf(e->button()));
    }
    void mouseMoveEvent(QMouseEvent* e) override {
        report(QStringLiteral("MouseMove"), e, buttonsOf(e->buttons()));
    }
    void mouseReleaseEvent(QMouseEvent* e) override {
        report(QStringLiteral("MouseUp"), e, buttonOf(e->button()));
    }

private:
    // The platform's button values: 1 left, 2 right, 4 middle.
    static int buttonOf(Qt::MouseButton b) {
        switch (b) {
        case Qt::LeftButton:
            return 1;
        case Qt::RightButton:
            return 2;
        case Qt::MiddleButton:
            return 4;
        default:
            return 0;
        }
    }
    static int buttonsOf(Qt::MouseButtons b) {
        return (b & Qt::LeftButton ? 1 : 0) | (b & Qt::RightButton ? 2 : 0) | (b & Qt::MiddleButton ? 4 : 0);
    }

    void report(const QString& event, QMouseEvent* e, int button) {
        const PaintSurface* surface = PaintSurface::of(control_);
        if (!surface)
            return;
        const QPoint p = e->position().toPoint();
        EventArgs args{button, platformShiftMask(e->modifiers()), static_cast<float>(surface->toUnits(p.x())),
                       static_cast<float>(surface->toUnits(p.y()))};
        Control* c = &control_;
        sink_.userInput([c, event, &args] { c->form().raiseEvent(*c, event, args); });
    }

    Control& control_;
    ViewSink& sink_;
};

} // namespace

ControlWidget makePictureBoxView(Control& control, QWidget* parent, ViewSink& sink) {
    if (!PaintSurface::of(control))
        return makePictureBox(control, parent, sink);
    auto* widget = new PaintSurfaceWidget(control, sink, parent);
    ControlWidget made{widget, nullptr, {}, false};
    made.sync = [widget](const QString& p) {
        if (p.isEmpty() || p == QLatin1String("Picture"))
            widget->update();
    };
    return made;
}

} // namespace tessaly::ui
