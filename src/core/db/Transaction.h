#pragma once

#include <concepts>
#include <type_traits>
#include <utility>

namespace tessaly::db {

// What opens, commits and rolls back a transaction: a backend's write
// transaction, or a kind of transaction an engine keeps for itself.
template <typename T>
concept Transactional = requires(T& t) {
    t.begin();
    t.commit();
    t.rollback();
};

// Runs `work` inside a transaction of `t`: committed when the work returns,
// rolled back when the work or the commit throws, the failure then going on
// to the caller. Returns what the work returns.
template <Transactional T, std::invocable Work>
std::invoke_result_t<Work> runInTransaction(T& t, Work&& work) {
    t.begin();
    try {
        if constexpr (std::is_void_v<std::invoke_result_t<Work>>) {
            std::forward<Work>(work)();
            t.commit();
        } else {
            auto result = std::forward<Work>(work)();
            t.commit();
            return result;
        }
    } catch (...) {
        t.rollback();
        throw;
    }
}

} // namespace tessaly::db
