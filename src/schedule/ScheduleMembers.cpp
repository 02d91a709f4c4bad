// The members of ctSchedule by name, as the program reaches them: the range,
// rows, bars with their texts, colours and keys, the selection, the design
// values, the print and the zoom of the time scale.
#include "ScheduleControl.h"
#include "canvas/api/Members.h"
#include "core/db/Values.h"

#include <QDate>
#include <QDateTime>

namespace tessaly::schedule {

namespace {

using canvas::arg;
using canvas::argInt;
using M = canvas::Members<ScheduleControl>;

// A day number from a value: a date is turned into its serial and, as every
// number here, rounded to a whole day (halves to the even day).
int32_t dayNumber(const QVariant& v) {
    const int type = v.metaType().id();
    if (type == QMetaType::QDate || type == QMetaType::QDateTime) {
        const QDateTime at = type == QMetaType::QDate ? QDateTime(v.toDate(), QTime(0, 0)) : v.toDateTime();
        return vb::checkInt32(static_cast<long long>(vb::roundHalfEven(db::values::serialFromDate(at))));
    }
    return vb::toInt32(v);
}

// Row and bar from the first two arguments of an indexed member.
int rowOf(const QVariantList& i) {
    return argInt(i, 0);
}
int barOf(const QVariantList& i) {
    return argInt(i, 1);
}

// A property of the bar named by (row, bar).
template <class Get, class Put> void barProperty(M& m, const char* name, Get get, Put put) {
    m.prop(
        QString::fromLatin1(name),
        [get](ScheduleControl& c, const QVariantList& i) { return QVariant(get(c.bar(rowOf(i), barOf(i)))); },
        [put](ScheduleControl& c, const QVariant& v, const QVariantList& i) {
            put(c.editBar(rowOf(i), barOf(i)), v);
        });
}

// A text of the design, read and written.
void designText(M& m, const char* name, QString ScheduleDesign::*field) {
    m.prop(
        QString::fromLatin1(name),
        [field](ScheduleControl& c, const QVariantList&) { return QVariant(c.design().*field); },
        [field](ScheduleControl& c, const QVariant& v, const QVariantList&) {
            c.design().*field = vb::toText(v);
            c.refresh();
        });
}

void rangeAndRows(M& m) {
    m.prop(
        "FirstDay", [](ScheduleControl& c, const QVariantList&) { return QVariant(c.firstDay()); },
        [](ScheduleControl& c, const QVariant& v, const QVariantList&) { c.setFirstDay(vb::toInt32(v)); });
    m.prop(
        "LastDay", [](ScheduleControl& c, const QVariantList&) { return QVariant(c.lastDay()); },
        [](ScheduleControl& c, const QVariant& v, const QVariantList&) { c.setLastDay(vb::toInt32(v)); });
    m.method("ClearAll", [](ScheduleControl& c, QVariantList&) {
        c.clearAll();
        return QVariant();
    });
    m.method("AddRow", [](ScheduleControl& c, QVariantList& a) {
        c.addRow(vb::toText(arg(a, 0)));
        return QVariant();
    });
    m.prop(
        "RowSetting", [](ScheduleControl& c, const QVariantList&) { return QVariant(c.rowSetting()); },
        [](ScheduleControl& c, const QVariant& v, const QVariantList&) { c.setRowSetting(vb::toInt16(v)); });
    m.prop(
        "RowsReady", [](ScheduleControl& c, const QVariantList&) { return QVariant(c.rowsReady()); },
        [](ScheduleControl& c, const QVariant& v, const QVariantList&) { c.setRowsReady(vb::toBool(v)); });
    m.prop("RowText",
           [](ScheduleControl& c, const QVariantList& i) { return QVariant(c.rowText(rowOf(i))); });
    m.prop("RowCount",
           [](ScheduleControl& c, const QVariantList&) { return QVariant(c.model().rowCount()); });
    m.prop("Rows", [](ScheduleControl& c, const QVariantList&) { return QVariant(c.rowTexts()); });
}

void bars(M& m) {
    m.method("AddBar", [](ScheduleControl& c, QVariantList& a) {
        const int row = argInt(a, 0);
        const DayTime start{dayNumber(arg(a, 3)), argInt(a, 1)};
        const DayTime end{dayNumber(arg(a, 4)), argInt(a, 2)};
        return QVariant(c.addBar(row, start, end));
    });
    m.prop("BarStartTime", [](ScheduleControl& c, const QVariantList& i) {
        return QVariant(c.bar(rowOf(i), barOf(i)).start.minutes);
    });
    m.prop("BarEndTime", [](ScheduleControl& c, const QVariantList& i) {
        return QVariant(c.bar(rowOf(i), barOf(i)).end.minutes);
    });
    m.prop("BarStartDate", [](ScheduleControl& c, const QVariantList& i) {
        return QVariant(c.bar(rowOf(i), barOf(i)).start.date);
    });
    m.prop("BarEndDate", [](ScheduleControl& c, const QVariantList& i) {
        return QVariant(c.bar(rowOf(i), barOf(i)).end.date);
    });
    barProperty(
        m, "BarStyle", [](const Bar& b) { return b.style; },
        [](Bar& b, const QVariant& v) { b.style = vb::toInt32(v); });
    barProperty(
        m, "BarText", [](const Bar& b) { return b.text; },
        [](Bar& b, const QVariant& v) { b.text = vb::toText(v); });
    barProperty(
        m, "BarComment", [](const Bar& b) { return b.comment; },
        [](Bar& b, const QVariant& v) { b.comment = vb::toText(v); });
    barProperty(
        m, "BarTextAlign", [](const Bar& b) { return b.align; },
        [](Bar& b, const QVariant& v) { b.align = vb::toInt32(v); });
    barProperty(
        m, "BarColour", [](const Bar& b) { return static_cast<int>(b.colour); },
        [](Bar& b, const QVariant& v) { b.colour = canvas::toColour(v); });
    barProperty(
        m, "BarKey", [](const Bar& b) { return b.key; },
        [](Bar& b, const QVariant& v) { b.key = vb::toText(v); });
    m.prop("BarCount",
           [](ScheduleControl& c, const QVariantList& i) { return QVariant(c.model().barCount(rowOf(i))); });
    m.prop("Bars", [](ScheduleControl& c, const QVariantList&) { return QVariant(c.barList()); });
    m.prop(
        "Picture", [](ScheduleControl& c, const QVariantList&) { return c.picture; },
        [](ScheduleControl& c, const QVariant& v, const QVariantList&) { c.picture = v; });
    m.method("AddPicture", [](ScheduleControl& c, QVariantList& a) {
        c.pictures.push_back(a.value(0));
        return QVariant(static_cast<int>(c.pictures.size()));
    });
    m.prop("PictureCount", [](ScheduleControl& c, const QVariantList&) {
        return QVariant(static_cast<int>(c.pictures.size()));
    });
    m.prop("SelectedRow",
           [](ScheduleControl& c, const QVariantList&) { return QVariant(c.model().selectedRow()); });
    m.prop("SelectedBar",
           [](ScheduleControl& c, const QVariantList&) { return QVariant(c.model().selectedBar()); });
}

void designAndView(M& m) {
    designText(m, "ListTitle", &ScheduleDesign::listTitle);
    designText(m, "DayNames", &ScheduleDesign::dayNames);
    designText(m, "MonthNames", &ScheduleDesign::monthNames);
    designText(m, "DateMask", &ScheduleDesign::dateMask);
    designText(m, "AMMark", &ScheduleDesign::amMark);
    designText(m, "PMMark", &ScheduleDesign::pmMark);
    designText(m, "PrintHeading", &ScheduleDesign::printHeading);
    designText(m, "PrintFooter", &ScheduleDesign::printFooter);
    m.prop(
        "PrintTitle", [](ScheduleControl& c, const QVariantList&) { return QVariant(c.printTitle); },
        [](ScheduleControl& c, const QVariant& v, const QVariantList&) { c.printTitle = vb::toText(v); });
    m.method("PrintChart", [](ScheduleControl& c, QVariantList&) {
        c.printChart();
        return QVariant();
    });
    m.prop(
        "DayWidth", [](ScheduleControl& c, const QVariantList&) { return QVariant(c.dayWidth()); },
        [](ScheduleControl& c, const QVariant& v, const QVariantList&) { c.setDayWidth(vb::toDouble(v)); });
    m.prop("TimeScale", [](ScheduleControl& c, const QVariantList&) { return QVariant(c.timeScaleName()); });
    m.prop("TipText", [](ScheduleControl& c, const QVariantList&) { return QVariant(c.tipText()); });
}

const M& table() {
    static const M table = [] {
        M m;
        rangeAndRows(m);
        bars(m);
        designAndView(m);
        return m;
    }();
    return table;
}

} // namespace

QVariant ScheduleControl::get(const QString& name, const QVariantList& index) {
    return table().get(*this, name, index);
}

void ScheduleControl::set(const QString& name, const QVariant& value, const QVariantList& index) {
    table().set(*this, name, value, index);
}

QVariant ScheduleControl::call(const QString& name, QVariantList& args) {
    return table().call(*this, name, args);
}

QStringList ScheduleControl::memberNames() const {
    return table().names();
}

} // namespace tessaly::schedule
