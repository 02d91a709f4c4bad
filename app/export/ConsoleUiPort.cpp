#include "ConsoleUiPort.h"

#include "core/port/ScriptedUiPort.h"

namespace tessaly::exporter {

namespace {
// The screen the converter reports: it has none.
constexpr QSize NoScreen{1024, 768};
} // namespace

int ConsoleUiPort::msgBox(const QString& text, int flags, const QString& title) {
    QString line = text;
    line.replace(QLatin1Char('\n'), QLatin1Char(' '));
    err_ << "tessaly-export: " << (title.isEmpty() ? QStringLiteral("message") : title) << ": " << line
         << '\n';
    err_.flush();
    return ScriptedUiPort::defaultResult(flags);
}

QSize ConsoleUiPort::screenSize() {
    return NoScreen;
}

} // namespace tessaly::exporter
