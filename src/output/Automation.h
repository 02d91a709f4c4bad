#pragma once

#include "workspace/LateBound.h"

// Members of the objects that the output windows reach late-bound besides the
// canvas: the mail program and its items, the file system object, the data
// control and the grid. Their member names are their own, not the canvas's;
// a member that an object lacks is run-time error 438, one of Nothing 424.
namespace tessaly::automation {

inline QVariant get(const AutoPtr& o, const char* name, const QVariantList& index = {}) {
    return late::get(o, name, index);
}

inline AutoPtr object(const AutoPtr& o, const char* name) {
    return late::object(o, name);
}

inline void set(const AutoPtr& o, const char* name, const QVariant& value) {
    late::set(o, name, value);
}

inline QVariant call(const AutoPtr& o, const char* name, QVariantList&& args = {}) {
    return late::call(o, name, std::move(args));
}

} // namespace tessaly::automation
