#include "MetafilePlayer.h"

#include "EmfParser.h"
#include "PainterSink.h"
#include "WmfParser.h"

namespace tessaly::metafile {

namespace {

// The transform that lays `frame` (whose size may be negative) onto `target`.
QTransform frameToTarget(const QRectF& frame, const QRectF& target) {
    const double sx = frame.width() != 0 ? target.width() / frame.width() : 1.0;
    const double sy = frame.height() != 0 ? target.height() / frame.height() : 1.0;
    return QTransform(sx, 0, 0, sy, target.left() - frame.left() * sx, target.top() - frame.top() * sy);
}

} // namespace

void playEmf(QPainter& painter, const QByteArray& bytes, const QRectF& target) {
    const EmfHeader header = readEmfHeader(bytes);
    QRectF frame = header.frameInDevice();
    if (frame.width() <= 0 || frame.height() <= 0)
        frame = QRectF(header.bounds);
    PainterSink sink(painter, frameToTarget(frame, target));
    parseEmf(bytes, sink);
}

void playWmf(QPainter& painter, const QByteArray& bytes, const QRectF& target) {
    const QRectF frame = wmfFrame(bytes);
    PainterSink sink(painter, frameToTarget(frame, target));
    parseWmf(bytes, &sink);
}

} // namespace tessaly::metafile
