#pragma once

#include "canvas/model/ShapeStyle.h"

#include <QWidget>

namespace tessaly::ui {

// A sample of a fill at the page's own scale: what a shape of the page
// filled so looks like at 100% zoom.
class FillPreview final : public QWidget {
    Q_OBJECT
public:
    explicit FillPreview(QWidget* parent = nullptr);

    const canvas::FillStyle& fill() const { return fill_; }
    void setFill(const canvas::FillStyle& fill);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    canvas::FillStyle fill_;
};

// Paints `fill` into `area` (pixels) with `pixelsPerMm` as the page's scale.
void paintFill(QPainter& painter, const QRectF& area, const canvas::FillStyle& fill, double pixelsPerMm);

} // namespace tessaly::ui
