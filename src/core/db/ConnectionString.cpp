#include "ConnectionString.h"

namespace tessaly::db {

namespace {

constexpr int DefaultPostgresPort = 5432; // the server's standard port

// Splits at semicolons outside double quotes.
QStringList splitPairs(const QString& text) {
    QStringList parts;
    QString current;
    bool quoted = false;
    for (const QChar c : text) {
        if (c == QLatin1Char('"')) {
            quoted = !quoted;
            current += c;
        } else if (c == QLatin1Char(';') && !quoted) {
            parts.append(current);
            current.clear();
        } else {
            current += c;
        }
    }
    parts.append(current);
    return parts;
}

QString unquote(const QString& value) {
    const QString v = value.trimmed();
    if (v.size() >= 2 && v.startsWith(QLatin1Char('"')) && v.endsWith(QLatin1Char('"')))
        return v.mid(1, v.size() - 2);
    return v;
}

} // namespace

ConnectionSettings parseConnectionString(const QString& connectionString) {
    ConnectionSettings s;
    for (const QString& pair : splitPairs(connectionString)) {
        const int eq = pair.indexOf(QLatin1Char('='));
        if (eq < 0)
            continue;
        const QString key = pair.left(eq).trimmed().toLower();
        if (key.isEmpty())
            continue;
        s.values.insert(key, unquote(pair.mid(eq + 1)));
    }
    s.provider = s.values.value(QStringLiteral("provider"));
    s.dataSource = s.values.value(QStringLiteral("data source"));
    s.userId = s.values.value(QStringLiteral("user id"), s.values.value(QStringLiteral("uid")));
    s.password = s.values.value(QStringLiteral("password"), s.values.value(QStringLiteral("pwd")));
    s.schema = s.values.value(QStringLiteral("schema"));
    return s;
}

bool ConnectionSettings::isServer() const {
    return provider.startsWith(QLatin1String("PostgreSQL"), Qt::CaseInsensitive);
}

QString ConnectionSettings::host() const {
    const QString hostPort = dataSource.section(QLatin1Char('/'), 0, 0);
    return hostPort.section(QLatin1Char(':'), 0, 0);
}

int ConnectionSettings::port() const {
    const QString hostPort = dataSource.section(QLatin1Char('/'), 0, 0);
    bool ok = false;
    const int p = hostPort.section(QLatin1Char(':'), 1, 1).toInt(&ok);
    return ok ? p : DefaultPostgresPort;
}

QString ConnectionSettings::database() const {
    return dataSource.section(QLatin1Char('/'), 1);
}

} // namespace tessaly::db
