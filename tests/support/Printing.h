#pragma once

#include <QRect>
#include <QSize>
#include <QString>
#include <ostream>

// How GoogleTest prints Qt values in a failure message.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}
inline void PrintTo(const QRect& r, std::ostream* os) {
    *os << "QRect(" << r.x() << ", " << r.y() << ", " << r.width() << ", " << r.height() << ")";
}
inline void PrintTo(const QSize& s, std::ostream* os) {
    *os << "QSize(" << s.width() << ", " << s.height() << ")";
}
