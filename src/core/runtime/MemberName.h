#pragma once

#include <QString>

namespace tessaly::member {

// Whether a member, property or event name given by the logic or a script is
// `expected`: names match without regard to case, as late binding matches them.
inline bool is(const QString& name, const char* expected) {
    return name.compare(QLatin1String(expected), Qt::CaseInsensitive) == 0;
}

} // namespace tessaly::member
