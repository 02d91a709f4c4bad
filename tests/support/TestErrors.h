#pragma once

#include "core/runtime/RuntimeError.h"

#include <functional>
#include <gtest/gtest.h>

namespace tessaly::db::test {

// The run-time error that `f` raises; a failure of the test when it raises none.
inline RuntimeError errorOf(const std::function<void()>& f) {
    try {
        f();
    } catch (const RuntimeError& e) {
        return e;
    }
    ADD_FAILURE() << "no run-time error was raised";
    return RuntimeError(0, QStringLiteral("none"));
}

} // namespace tessaly::db::test
