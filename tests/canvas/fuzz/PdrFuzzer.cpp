// libFuzzer target: the .pdr decoder must turn any bytes into a drawing or
// into run-time error 30001, never crash, hang or leak.
#include "canvas/io/PdrFormat.h"
#include "core/runtime/RuntimeError.h"

#include <QByteArray>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    try {
        const tessaly::canvas::pdr::Contents contents = tessaly::canvas::pdr::decode(bytes);
        // a drawing that decodes must encode and decode to the same number of shapes
        const QByteArray again = tessaly::canvas::pdr::encode(contents.shapes, contents.state);
        const tessaly::canvas::pdr::Contents back = tessaly::canvas::pdr::decode(again);
        if (back.shapes.size() != contents.shapes.size())
            __builtin_trap();
    } catch (const tessaly::RuntimeError& e) {
        if (e.number() != tessaly::err::CanvasFile)
            __builtin_trap();
    }
    return 0;
}
