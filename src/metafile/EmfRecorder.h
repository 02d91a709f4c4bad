#pragma once

#include "ByteWriter.h"

#include <QByteArray>
#include <QImage>
#include <QRect>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <vector>

namespace tessaly::metafile {

// Writes the records of one enhanced metafile: it numbers them, pads each to
// a multiple of four bytes, hands out object indexes of the handle table
// (index 0 stays reserved), keeps the device-unit bounds of what is drawn,
// and on finish puts the header in front and EMR_EOF behind.
class EmfRecorder {
public:
    // frameMm: the picture frame in millimetres; dotsPerInch: device units per
    // inch of the reference device; description: "App\0Title" (the closing
    // double NUL is added when missing).
    EmfRecorder(QSizeF frameMm, int dotsPerInch, QString description);

    // Replaces the frame written in the header (0.01 mm, inclusive corners).
    void setFrameHiMetric(const QRect& frame) { frameOverride_ = frame; }

    // The picture frame in device units.
    QSize deviceSize() const { return deviceSize_; }
    int dotsPerInch() const { return dotsPerInch_; }
    bool finished() const { return finished_; }

    // Starts a record of the given type; write its body through the writer
    // and close it with endRecord(), which fills in the size.
    ByteWriter& beginRecord(uint32_t type);
    void endRecord();

    // A record with 32-bit arguments only (EMR_SETBKMODE, EMR_SELECTOBJECT, ...).
    void simpleRecord(uint32_t type, std::initializer_list<uint32_t> arguments);

    // The lowest free object index (never 0), and its release.
    uint32_t allocateObject();
    void releaseObject(uint32_t index);

    // Grows the bounds by a rectangle in device units (inclusive corners).
    void includeBounds(const QRect& deviceRect);
    QRect bounds() const { return bounds_; }

    // EMR_STRETCHDIBITS of the whole image into a destination rectangle in
    // logical units; `deviceBounds` is what the record covers on the device.
    void stretchDiBits(const QImage& image, const QRect& destination, const QRect& deviceBounds);

    // Finishes the file (EMR_EOF and the header) and returns its bytes.
    // Later calls return the same bytes.
    QByteArray finish();

private:
    QByteArray headerRecord(uint32_t totalBytes, uint32_t totalRecords) const;

    QSizeF frameMm_;
    int dotsPerInch_;
    QString description_;
    QSize deviceSize_;
    QByteArray body_;
    ByteWriter writer_;
    qsizetype recordStart_ = -1;
    uint32_t records_ = 0;
    std::vector<bool> used_{true}; // index 0 is reserved
    uint32_t handlesNeeded_ = 1;
    QRect bounds_;
    QRect frameOverride_;
    bool finished_ = false;
    QByteArray result_;
};

} // namespace tessaly::metafile
