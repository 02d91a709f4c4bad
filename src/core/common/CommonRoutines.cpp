#include "CommonRoutines.h"

#include "core/files/FileSystem.h"
#include "core/forms/ApplicationBase.h"
#include "core/runtime/Clock.h"
#include "core/runtime/Vb.h"

#include <QDateTime>

namespace tessaly::common {

namespace {
constexpr int MinutesPerHour = 60;
constexpr int Noon = 720;           // minutes at 12:00 PM
constexpr int NoonHourEnd = 778;    // last minute that the hour rule shows as "12:"
constexpr int MinutesPerDay = 1440; // midnight at the end of the day
} // namespace

void ReportError(ApplicationBase& app, const QString& a, const QString& b, const QString& c) {
    const QString now = clock::now().toString(QStringLiteral("dd/MM/yyyy HH:mm:ss"));
    fs::appendText(app.home.appPath() + QStringLiteral("\\ErrorLog.Log"),
                   now + QLatin1Char('-') + a + QLatin1Char('-') + b + QLatin1Char('-') + c +
                       QLatin1Char('\n'));
}

QString MinutesToTimeText(int16_t& minutes) {
    const int m = minutes;
    QString text;
    if (m >= MinutesPerHour && !(m >= Noon && m <= NoonHourEnd)) {
        const int hour = m < Noon + 1 ? m / MinutesPerHour : (m - Noon) / MinutesPerHour;
        text = QString::number(hour).trimmed() + QLatin1Char(':');
    } else {
        text = QStringLiteral("12:");
    }
    const int rest = m % MinutesPerHour;
    if (rest >= 10)
        text += QString::number(rest);
    else
        text += QLatin1Char('0') + QString::number(rest);
    if (m == 0 || m == MinutesPerDay)
        text += QStringLiteral(" Mid");
    else if (m < Noon)
        text += QStringLiteral(" AM");
    else
        text += QStringLiteral(" PM");
    return text;
}

bool ValidatePositive(ApplicationBase& app, const QVariant& value) {
    if (vb::isNumeric(value) && vb::toDouble(value) > 0)
        return true;
    app.ui.msgBox(QStringLiteral("You must enter a numeric value, greater than zero!"), mb::Critical,
                  AppTitle);
    return false;
}

static QString fileDialog(ApplicationBase& app, const QString& filter, bool save) {
    FileDialogRequest request;
    request.filter = filter;
    request.defaultExt = CommonDialogDefaultExt;
    const std::optional<QString> chosen = save ? app.ui.saveDialog(request) : app.ui.openDialog(request);
    if (!chosen)
        return QString();
    QString path = *chosen;
    while (path.endsWith(QLatin1Char(' ')))
        path.chop(1);
    return path;
}

QString ShowSaveDialog(ApplicationBase& app, const QString& filter) {
    return fileDialog(app, filter, true);
}

QString ShowOpenDialog(ApplicationBase& app, const QString& filter) {
    return fileDialog(app, filter, false);
}

uint32_t ShowColourDialog(ApplicationBase& app, uint32_t& colour) {
    const std::optional<unsigned> chosen = app.ui.colourDialog(colour);
    return chosen ? *chosen : colour;
}

void SelectAllText(Form& form) {
    Control* c = form.focused();
    if (!c || c->kind() != ControlKind::TextBox)
        return;
    c->setProp(QStringLiteral("SelStart"), 0);
    c->setProp(QStringLiteral("SelLength"), static_cast<int>(c->text().size()));
}

bool FileExists(const QString& path) {
    try {
        return fs::fileExists(path);
    } catch (const RuntimeError&) {
        return false; // a bad path counts as not found
    }
}

} // namespace tessaly::common
