// libFuzzer target: the EMF reader, its playback and its conversion to WMF.
#include "FuzzQt.h"

#include "core/runtime/RuntimeError.h"
#include "metafile/EmfParser.h"
#include "metafile/MetafilePlayer.h"
#include "metafile/WmfWriter.h"

#include <QImage>
#include <QPainter>

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    startFuzzApplication();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    try {
        tessaly::metafile::checkEmfRecords(bytes);
    } catch (const tessaly::RuntimeError&) {
    }
    QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        try {
            tessaly::metafile::playEmf(painter, bytes, QRectF(0, 0, 48, 48));
        } catch (const tessaly::RuntimeError&) {
        }
    }
    try {
        tessaly::metafile::convertEmfToWmf(bytes, size % 2 == 0);
    } catch (const tessaly::RuntimeError&) {
    }
    return 0;
}
