#include "CoreApplication.h"

#include "core/files/FileSystem.h"
#include "core/runtime/RuntimeError.h"

#include <QFile>
#include <QRegularExpression>

namespace tessaly {

namespace {
// The error number the database provider gave for a file it cannot open.
constexpr int ProviderError = -2147467259;
const QByteArray SqliteMagic("SQLite format 3", 16); // the first bytes of every SQLite file

QString dataSourceOf(const QString& connectionString) {
    static const QRegularExpression re(QStringLiteral("Data Source=([^;]*)"),
                                       QRegularExpression::CaseInsensitiveOption);
    const auto m = re.match(connectionString);
    return m.hasMatch() ? m.captured(1).trimmed() : QString();
}
} // namespace

void CoreApplication::OpenConnection() {
    const QString path = dataSourceOf(gConnectionString);
    const QString host = fs::toHost(path);
    QFile file(host);
    if (path.isEmpty() || !file.exists())
        raiseError(ProviderError, QStringLiteral("Could not find file '%1'.").arg(path));
    if (!file.open(QIODevice::ReadOnly) || file.read(SqliteMagic.size()) != SqliteMagic)
        raiseError(ProviderError, QStringLiteral("Unrecognized database format '%1'.").arg(path));
    connectionOpen_ = true;
}

void CoreApplication::CloseDatabase() {
    connectionOpen_ = false;
    gConnection.reset();
}

} // namespace tessaly
