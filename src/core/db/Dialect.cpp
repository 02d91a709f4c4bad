#include "Dialect.h"

namespace tessaly::db {

QString Dialect::quote(const QString& name) const {
    QString n = name;
    n.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + n + QLatin1Char('"');
}

} // namespace tessaly::db
