#include "EmfRecorder.h"

#include "Dib.h"
#include "RecordTypes.h"

#include <algorithm>
#include <cmath>

namespace tessaly::metafile {

namespace {

// Size of the header record's fixed part in its full form (with the pixel
// format and micrometre fields); the description follows it.
constexpr uint32_t HeaderFixedSize = 108;
// EMF format version 1.0.
constexpr uint32_t EmfVersion = 0x00010000;
// Size of EMR_EOF without a palette.
constexpr uint32_t EofSize = 20;
// Millimetres per inch.
constexpr double MmPerInch = 25.4;
// The reference device is a square of whole multiples of five inches, which
// is exactly 127 mm: so its size in device units and in millimetres agree
// exactly at any resolution.
constexpr int ReferenceStepMm = 127;
constexpr int ReferenceStepInches = 5;
// Size of the fixed part of EMR_STRETCHDIBITS before the bitmap header.
constexpr uint32_t StretchDiBitsFixedSize = 80;

} // namespace

EmfRecorder::EmfRecorder(QSizeF frameMm, int dotsPerInch, QString description)
    : frameMm_(frameMm), dotsPerInch_(std::max(1, dotsPerInch)), description_(std::move(description)),
      writer_(body_) {
    if (!frameMm_.isValid() || frameMm_.width() < 0.01)
        frameMm_.setWidth(std::max(0.01, frameMm_.width()));
    if (frameMm_.height() < 0.01)
        frameMm_.setHeight(0.01);
    deviceSize_ =
        QSize(std::max(1, static_cast<int>(std::lround(frameMm_.width() / MmPerInch * dotsPerInch_))),
              std::max(1, static_cast<int>(std::lround(frameMm_.height() / MmPerInch * dotsPerInch_))));
    if (!description_.isEmpty() && !description_.endsWith(QChar(0)))
        description_.append(QChar(0));
    if (!description_.isEmpty())
        description_.append(QChar(0));
    body_.reserve(64 * 1024);
}

ByteWriter& EmfRecorder::beginRecord(uint32_t type) {
    recordStart_ = body_.size();
    writer_.u32(type);
    writer_.u32(0); // size, filled in by endRecord
    return writer_;
}

void EmfRecorder::endRecord() {
    writer_.padTo(recordStart_, 4);
    writer_.patchU32(recordStart_ + 4, static_cast<uint32_t>(body_.size() - recordStart_));
    ++records_;
    recordStart_ = -1;
}

void EmfRecorder::simpleRecord(uint32_t type, std::initializer_list<uint32_t> arguments) {
    ByteWriter& w = beginRecord(type);
    for (uint32_t a : arguments)
        w.u32(a);
    endRecord();
}

uint32_t EmfRecorder::allocateObject() {
    auto free = std::find(used_.begin() + 1, used_.end(), false);
    const auto index = static_cast<uint32_t>(free - used_.begin());
    if (free == used_.end())
        used_.push_back(true);
    else
        *free = true;
    handlesNeeded_ = std::max(handlesNeeded_, index + 1);
    return index;
}

void EmfRecorder::releaseObject(uint32_t index) {
    if (index > 0 && index < used_.size())
        used_[index] = false;
}

void EmfRecorder::includeBounds(const QRect& deviceRect) {
    if (deviceRect.isEmpty())
        return;
    bounds_ = bounds_.isNull() ? deviceRect : bounds_.united(deviceRect);
}

void EmfRecorder::stretchDiBits(const QImage& image, const QRect& destination, const QRect& deviceBounds) {
    const QByteArray info = dib::infoHeader24(image);
    const QByteArray bits = dib::bits24(image);
    ByteWriter& w = beginRecord(emr::StretchDiBits);
    w.i32(deviceBounds.left());
    w.i32(deviceBounds.top());
    w.i32(deviceBounds.right());
    w.i32(deviceBounds.bottom());
    w.i32(destination.x());
    w.i32(destination.y());
    w.i32(0); // source x
    w.i32(0); // source y
    w.i32(image.width());
    w.i32(image.height());
    w.u32(StretchDiBitsFixedSize);
    w.u32(static_cast<uint32_t>(info.size()));
    w.u32(StretchDiBitsFixedSize + static_cast<uint32_t>(info.size()));
    w.u32(static_cast<uint32_t>(bits.size()));
    w.u32(gdi::DibRgbColors);
    w.u32(gdi::SrcCopy);
    w.i32(destination.width());
    w.i32(destination.height());
    w.bytes(info);
    w.bytes(bits);
    endRecord();
    includeBounds(deviceBounds);
}

QByteArray EmfRecorder::headerRecord(uint32_t totalBytes, uint32_t totalRecords) const {
    QByteArray header;
    ByteWriter w(header);
    const QRect bounds = bounds_.isNull() ? QRect(QPoint(0, 0), QPoint(-1, -1)) : bounds_;
    const int frameRight = std::max(1, static_cast<int>(std::lround(frameMm_.width() * 100)));
    const int frameBottom = std::max(1, static_cast<int>(std::lround(frameMm_.height() * 100)));
    const double largestMm = std::max(frameMm_.width(), frameMm_.height());
    const int steps = std::max(1, static_cast<int>(std::ceil(largestMm / ReferenceStepMm)));
    const int referenceMm = steps * ReferenceStepMm;
    const int referenceDevice = steps * ReferenceStepInches * dotsPerInch_;

    w.u32(emr::Header);
    w.u32(0); // size, patched below
    w.i32(bounds.left());
    w.i32(bounds.top());
    w.i32(bounds.right());
    w.i32(bounds.bottom());
    const QRect frame =
        frameOverride_.isNull() ? QRect(QPoint(0, 0), QPoint(frameRight, frameBottom)) : frameOverride_;
    w.i32(frame.left());
    w.i32(frame.top());
    w.i32(frame.right());
    w.i32(frame.bottom());
    w.u32(EmfSignature);
    w.u32(EmfVersion);
    w.u32(totalBytes);
    w.u32(totalRecords);
    w.u16(static_cast<uint16_t>(handlesNeeded_));
    w.u16(0); // reserved
    w.u32(static_cast<uint32_t>(description_.size()));
    w.u32(description_.isEmpty() ? 0 : HeaderFixedSize);
    w.u32(0); // palette entries
    w.i32(referenceDevice);
    w.i32(referenceDevice);
    w.i32(referenceMm);
    w.i32(referenceMm);
    w.u32(0); // pixel format size
    w.u32(0); // pixel format offset
    w.u32(0); // not OpenGL
    w.i32(referenceMm * 1000);
    w.i32(referenceMm * 1000);
    w.utf16(description_);
    w.padTo(0, 4);
    w.patchU32(4, static_cast<uint32_t>(header.size()));
    return header;
}

QByteArray EmfRecorder::finish() {
    if (finished_)
        return result_;
    simpleRecord(emr::Eof, {0, 16, EofSize});
    const uint32_t headerSize = static_cast<uint32_t>(headerRecord(0, 0).size());
    const auto total = static_cast<uint32_t>(headerSize + body_.size());
    result_ = headerRecord(total, records_ + 1);
    result_.append(body_);
    body_ = QByteArray();
    finished_ = true;
    return result_;
}

} // namespace tessaly::metafile
