// The date picker and the time edit.
#include "ControlWidget.h"

#include <QCalendarWidget>
#include <QDateEdit>
#include <QLocale>
#include <QRegularExpression>
#include <QSignalBlocker>
#include <QTimeEdit>

namespace tessaly::ui {

namespace {
constexpr int MinutesPerHour = 60;
constexpr int MinutesPerDay = 1440;
// The time edit's mask: hours, minutes and the am or pm mark ("08:00 am").
const QString TimeMask = QStringLiteral("hh:mm ap");

bool wants(const QString& property, const char* name) {
    return property.isEmpty() || property == QLatin1String(name);
}

// The short date of the locale, its year in four digits.
QString pickerFormat() {
    QString format = QLocale().dateFormat(QLocale::ShortFormat);
    static const QRegularExpression year(QStringLiteral("y+"));
    return format.replace(year, QStringLiteral("yyyy"));
}

QTime timeOfMinutes(int minutes) {
    // The end of the day, 1440, shows as the midnight it is.
    const int m = ((minutes % MinutesPerDay) + MinutesPerDay) % MinutesPerDay;
    return QTime(m / MinutesPerHour, m % MinutesPerHour);
}
} // namespace

ControlWidget makeDatePicker(Control& control, QWidget* parent, ViewSink& sink) {
    auto* edit = new QDateEdit(parent);
    edit->setCalendarPopup(true);
    edit->setDisplayFormat(pickerFormat());
    edit->setMinimumDate(QDate(100, 1, 1));
    edit->setMaximumDate(QDate(9999, 12, 31));
    // A new day keeps the value's time of day.
    QObject::connect(edit, &QDateEdit::dateChanged, edit, [&control, &sink](const QDate& day) {
        const QDateTime held = control.prop(QStringLiteral("Value")).toDateTime();
        if (held.date() == day)
            return;
        sink.userInput([&] { control.setPickedValue(QDateTime(day, held.time(), Qt::UTC)); });
    });
    ControlWidget made{edit, nullptr, {}, true};
    made.sync = [edit, &control](const QString& p) {
        const QSignalBlocker quiet(edit);
        if (wants(p, "Value"))
            edit->setDate(control.prop(QStringLiteral("Value")).toDateTime().date());
    };
    return made;
}

ControlWidget makeTimeEdit(Control& control, QWidget* parent, ViewSink& sink) {
    auto* edit = new QTimeEdit(parent);
    edit->setDisplayFormat(TimeMask);
    QObject::connect(edit, &QTimeEdit::timeChanged, edit, [&control, &sink](const QTime& time) {
        const int minutes = time.hour() * MinutesPerHour + time.minute();
        if (timeOfMinutes(control.prop(QStringLiteral("Value")).toInt()) == time)
            return;
        sink.userInput([&] { control.setPickedValue(minutes); });
    });
    ControlWidget made{edit, nullptr, {}, true};
    made.sync = [edit, &control](const QString& p) {
        const QSignalBlocker quiet(edit);
        if (wants(p, "Value"))
            edit->setTime(timeOfMinutes(control.prop(QStringLiteral("Value")).toInt()));
    };
    return made;
}

} // namespace tessaly::ui
