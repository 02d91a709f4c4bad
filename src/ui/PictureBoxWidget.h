#pragma once

#include "ControlWidget.h"

#include <QWidget>

class QMouseEvent;

namespace tessaly {
class PictureBox;
}

namespace tessaly::ui {

// The widget of a picture box that has a drawing surface: it paints the
// surface's picture from its top-left corner, one picture pixel to a screen
// pixel, and reports MouseDown, MouseMove and MouseUp with the platform's
// button and shift values and the position in the box's scale units.
class PictureBoxWidget final : public QWidget {
public:
    PictureBoxWidget(Control& control, PictureBox& surface, ViewSink& sink, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void report(const QString& event, int button, const QMouseEvent& mouse);

    Control& control_;
    PictureBox& surface_;
    ViewSink& sink_;
};

} // namespace tessaly::ui
