#include "PictureBoxWidget.h"

#include "ViewUnits.h"
#include "core/forms/PictureBox.h"

#include <QMouseEvent>
#include <QPainter>

namespace tessaly::ui {

PictureBoxWidget::PictureBoxWidget(Control& control, PictureBox& surface, ViewSink& sink, QWidget* parent)
    : QWidget(parent), control_(control), surface_(surface), sink_(sink) {
    setAutoFillBackground(true);
    // MouseMove comes with and without a button held, as the platform reports it.
    setMouseTracking(true);
}

void PictureBoxWidget::paintEvent(QPaintEvent*) {
    if (!surface_.hasPicture())
        return;
    QPainter painter(this);
    painter.drawImage(QPoint(0, 0), surface_.picture());
}

void PictureBoxWidget::mousePressEvent(QMouseEvent* event) {
    report(QStringLiteral("MouseDown"), platformButton(event->button()), *event);
}

void PictureBoxWidget::mouseMoveEvent(QMouseEvent* event) {
    report(QStringLiteral("MouseMove"), platformButtons(event->buttons()), *event);
}

void PictureBoxWidget::mouseReleaseEvent(QMouseEvent* event) {
    report(QStringLiteral("MouseUp"), platformButton(event->button()), *event);
}

void PictureBoxWidget::report(const QString& event, int button, const QMouseEvent& mouse) {
    Form& form = control_.form();
    if (!form.hasHandler(control_.name(), event))
        return;
    const double perPixel = surface_.unitsPerPixel();
    EventArgs args{button, platformShiftMask(mouse.modifiers()),
                   static_cast<float>(mouse.position().x() * perPixel),
                   static_cast<float>(mouse.position().y() * perPixel)};
    Control& control = control_;
    sink_.userInput([&control, &event, &args] { control.form().raiseEvent(control, event, args); });
}

} // namespace tessaly::ui
