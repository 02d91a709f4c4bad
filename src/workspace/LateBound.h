#pragma once

#include "core/runtime/AutoObject.h"

// Reads, writes and calls members of the canvas object model by name, the
// way Tessaly's handlers reach the canvas.
namespace tessaly::late {

inline QVariant get(const AutoPtr& o, const char* name, const QVariantList& index = {}) {
    return o->get(QString::fromLatin1(name), index);
}

inline AutoPtr object(const AutoPtr& o, const char* name, const QVariantList& index = {}) {
    return toObject(o->get(QString::fromLatin1(name), index));
}

inline void set(const AutoPtr& o, const char* name, const QVariant& value) {
    o->set(QString::fromLatin1(name), value);
}

// A call whose arguments come back changed where the method writes them.
inline QVariant call(const AutoPtr& o, const char* name, QVariantList& args) {
    return o->call(QString::fromLatin1(name), args);
}

inline QVariant call(const AutoPtr& o, const char* name, QVariantList&& args = {}) {
    return o->call(QString::fromLatin1(name), args);
}

} // namespace tessaly::late
