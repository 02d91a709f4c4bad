// libFuzzer target: the WMF reader (placeable or not) and its playback.
#include "FuzzQt.h"

#include "core/runtime/RuntimeError.h"
#include "metafile/MetafilePlayer.h"
#include "metafile/WmfParser.h"

#include <QImage>
#include <QPainter>

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    startFuzzApplication();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    try {
        tessaly::metafile::wmfFrame(bytes);
    } catch (const tessaly::RuntimeError&) {
    }
    QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    try {
        tessaly::metafile::playWmf(painter, bytes, QRectF(0, 0, 48, 48));
    } catch (const tessaly::RuntimeError&) {
    }
    return 0;
}
