#pragma once

#include "core/runtime/RuntimeError.h"

#include <functional>

namespace tessaly {

// One step of a routine that runs under "resume next": a run-time error ends
// that step only, and the routine goes on with the next one. Returns the
// number of the error that ended the step, or 0 when the step ran through.
inline int resumeNext(const std::function<void()>& step) {
    try {
        step();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

} // namespace tessaly
