#pragma once

#include <QByteArray>
#include <QPaintDevice>
#include <QSizeF>
#include <QString>
#include <memory>

namespace tessaly::metafile {

class EmfPaintEngine;
class EmfRecorder;

// A paint device that records what QPainter draws as an enhanced metafile.
// Paint in device units: pixels of a reference device at `dotsPerInch`.
class EmfPaintDevice : public QPaintDevice {
public:
    // frameMm: the picture frame in millimetres; dotsPerInch: device units per inch of the reference device.
    explicit EmfPaintDevice(QSizeF frameMm, int dotsPerInch = 96,
                            QString description = QStringLiteral("Tessaly\0Drawing"));
    ~EmfPaintDevice() override;
    EmfPaintDevice(const EmfPaintDevice&) = delete;
    EmfPaintDevice& operator=(const EmfPaintDevice&) = delete;

    QPaintEngine* paintEngine() const override;

    // Finishes the recording (call after QPainter::end) and returns the file's bytes.
    QByteArray toBytes();
    // Writes the file atomically; RuntimeError 75 on failure.
    void save(const QString& hostPath);

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    QSizeF frameMm_;
    int dotsPerInch_;
    std::unique_ptr<EmfRecorder> recorder_;
    std::unique_ptr<EmfPaintEngine> engine_;
};

} // namespace tessaly::metafile
