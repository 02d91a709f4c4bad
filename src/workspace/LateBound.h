#pragma once

#include "core/runtime/AutoObject.h"
#include "core/runtime/RuntimeError.h"

// Reads, writes and calls members of the canvas object model by name, the
// way Tessaly's handlers reach the canvas. A member of Nothing is run-time
// error 424, not a crash.
namespace tessaly::late {

inline AutoObject& require(const AutoPtr& o) {
    if (!o)
        raiseError(err::ObjectRequired, QStringLiteral("Object variable not set"));
    return *o;
}

inline QVariant get(const AutoPtr& o, const char* name, const QVariantList& index = {}) {
    return require(o).get(QString::fromLatin1(name), index);
}

inline AutoPtr object(const AutoPtr& o, const char* name, const QVariantList& index = {}) {
    return toObject(require(o).get(QString::fromLatin1(name), index));
}

inline void set(const AutoPtr& o, const char* name, const QVariant& value) {
    require(o).set(QString::fromLatin1(name), value);
}

// A call whose arguments come back changed where the method writes them.
inline QVariant call(const AutoPtr& o, const char* name, QVariantList& args) {
    return require(o).call(QString::fromLatin1(name), args);
}

inline QVariant call(const AutoPtr& o, const char* name, QVariantList&& args = {}) {
    return require(o).call(QString::fromLatin1(name), args);
}

} // namespace tessaly::late
