// libFuzzer target: the picture loader on any bytes, and drawing what it accepts.
#include "FuzzQt.h"

#include "core/runtime/RuntimeError.h"
#include "metafile/Picture.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    startFuzzApplication();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    try {
        const tessaly::metafile::Picture picture = tessaly::metafile::Picture::fromData(bytes);
        picture.toImage(QSize(32, 32));
    } catch (const tessaly::RuntimeError&) {
    }
    return 0;
}
