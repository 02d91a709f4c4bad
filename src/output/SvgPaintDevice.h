#pragma once

#include <QByteArray>
#include <QPaintDevice>
#include <QSizeF>
#include <QString>
#include <memory>

namespace tessaly::output {

class SvgPaintEngine;

// A paint device that writes what QPainter draws as an SVG document: paths,
// lines and rectangles as shapes, text as text, hatch and texture fills as
// patterns, shades as gradients, pictures as embedded PNG. Paint in pixels of
// a reference device at `dotsPerInch`; the document states its size in
// millimetres, so it prints at the size given.
class SvgPaintDevice final : public QPaintDevice {
public:
    SvgPaintDevice(QSizeF sizeMm, int dotsPerInch, QString title);
    ~SvgPaintDevice() override;
    SvgPaintDevice(const SvgPaintDevice&) = delete;
    SvgPaintDevice& operator=(const SvgPaintDevice&) = delete;

    QPaintEngine* paintEngine() const override;
    // The whole document; call after QPainter::end.
    QByteArray document() const;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    QSizeF sizeMm_;
    int dotsPerInch_;
    QString title_;
    std::unique_ptr<SvgPaintEngine> engine_;
};

} // namespace tessaly::output
