// The project manager's tab 3 "Project Planner": the site's time lines as the
// rows of the schedule, their panel, the bookings of Schedule as the bars,
// the booking dialog that the schedule's gestures open, the tip of a bar, the
// deletion of a booking, the moves of the range and the print of the chart.
//
// What the chart shows after a gesture is never trusted: only OK in the
// booking dialog writes, and the chart is then built again from the table.
#include "projects/frmClientSites.h"

#include "core/common/CommonRoutines.h"
#include "core/common/SystemFormats.h"
#include "core/db/Ado.h"
#include "core/db/Recordset.h"
#include "core/db/Values.h"
#include "core/runtime/Clock.h"
#include "core/runtime/Vb.h"
#include "projects/ProjectDb.h"
#include "projects/ProjectsModule.h"
#include "schedule/ScheduleControl.h"
#include "schedule/ScheduleEvents.h"
#include "workspace/Application.h"

namespace tessaly {

namespace {

constexpr int RowSettingPoints = 15;        // the schedule's row setting at each rebuild
constexpr int RangeBeforeToday = 30;        // days of the rebuilt range before today
constexpr int RangeAfterToday = 90;         // and after it
constexpr int BackFirstDays = 90;           // cmdSchedBack: the first day back by this many days
constexpr int BackLastDays = 30;            // and the last day
constexpr int ForwardFirstDays = 30;        // cmdSchedForward: the first day on by this many days
constexpr int ForwardLastDays = 90;         // and the last day
constexpr uint32_t NewBarColour = 0xFFFFFF; // the colour a newly drawn bar's dialog starts with
constexpr int16_t NewBooking = -1;          // gIsNewBooking when OK adds a row
constexpr int16_t ChangedBooking = 0;       // and when it updates one
constexpr int16_t SavedBarStyle = 1;        // BarStyle as every save writes it
constexpr int16_t SavedTextAlign = 0;       // BarTextAlign as every save writes it
constexpr int16_t SavedImageIndex = 0;      // ImageIndex as every save writes it
constexpr int ExclamationFlags = 48;        // OK, exclamation icon
constexpr int DeleteBookingFlags = 292;     // Yes and No, question icon, No the default

// The day the schedule's range is counted from, as typed in the system's date format.
const QString RangeOrigin = QStringLiteral("01/01/1900");

const QString TimeLinesOfSite =
    QStringLiteral("SELECT * FROM ProjectTimeLines WHERE (((ProjectTimeLines.SiteID)=");
const QString BookingsOfSite = QStringLiteral("SELECT * FROM Schedule WHERE (((Schedule.SiteID)=");
const QString OneBooking = QStringLiteral("SELECT * FROM Schedule WHERE (((Schedule.ScheduleID)=");
const QString QueryEnd = QStringLiteral("));");

// A whole number of a field, Null being error 94.
int32_t longField(db::Recordset& rs, int ordinal) {
    return db::longOf(rs.value(ordinal));
}

// A date of the system's serials as a date with no time of day (a day number
// to a floating value to a date).
QDateTime dateOfDay(int32_t day) {
    return db::values::dateFromSerial(static_cast<double>(day));
}

} // namespace

void frmClientSites::registerPlannerHandlers() {
    const auto click = [this](Control& c, void (frmClientSites::*handler)()) {
        on(c.name(), QStringLiteral("Click"), [this, handler](Control&, EventArgs&) { (this->*handler)(); });
    };
    click(cmdNewTimeLineElement, &frmClientSites::cmdNewTimeLineElement_Click);
    click(cmdAddTimeLine, &frmClientSites::cmdAddTimeLine_Click);
    click(cmdCancelTimeLine, &frmClientSites::cmdCancelTimeLine_Click);
    click(cmdColourPick, &frmClientSites::cmdColourPick_Click);
    click(cmdSaveSchedule, &frmClientSites::cmdSaveSchedule_Click);
    click(cmdCancelSchedule, &frmClientSites::cmdCancelSchedule_Click);
    click(cmdDeleteTimeBar, &frmClientSites::cmdDeleteTimeBar_Click);
    click(cmdRefreshSchedule, &frmClientSites::rebuildSchedule);
    click(cmdSchedBack, &frmClientSites::cmdSchedBack_Click);
    click(cmdSchedForward, &frmClientSites::cmdSchedForward_Click);
    click(cmdPrintSchedule, &frmClientSites::cmdPrintSchedule_Click);
    const auto bar = [this](const QString& event, void (frmClientSites::*handler)(EventArgs&)) {
        on(ctSchedule1.name(), event, [this, handler](Control&, EventArgs& a) { (this->*handler)(a); });
    };
    bar(schedule::event::BarDrawn, &frmClientSites::ctSchedule1_BarDrawn);
    bar(schedule::event::BarChanged, &frmClientSites::ctSchedule1_BarChanged);
    bar(schedule::event::BarActivated, &frmClientSites::ctSchedule1_BarActivated);
    bar(schedule::event::BarPointed, &frmClientSites::ctSchedule1_BarPointed);
}

void frmClientSites::registerPlannerMembers() {
    routine(QStringLiteral("AddTimeLineRow"), [this](QVariantList&) {
        AddTimeLineRow();
        return QVariant();
    });
    routine(QStringLiteral("ResetScheduleRows"), [this](QVariantList&) {
        ResetScheduleRows();
        return QVariant();
    });
    routine(QStringLiteral("FillTimeLineList"), [this](QVariantList&) {
        FillTimeLineList();
        return QVariant();
    });
    routine(QStringLiteral("FillProjectItemList"), [this](QVariantList&) {
        FillProjectItemList();
        return QVariant();
    });
    routine(QStringLiteral("LoadScheduleBars"), [this](QVariantList& a) {
        LoadScheduleBars(vb::toInt32(a.value(0)));
        return QVariant();
    });
    routine(QStringLiteral("LoadBooking"), [this](QVariantList& a) {
        LoadBooking(vb::toInt32(a.value(0)));
        return QVariant();
    });
    routine(QStringLiteral("SaveBooking"), [this](QVariantList& a) {
        SaveBooking(vb::toInt16(a.value(0)), vb::toInt32(a.value(1)));
        return QVariant();
    });
    routine(QStringLiteral("DeleteBooking"), [this](QVariantList& a) {
        DeleteBooking(vb::toInt32(a.value(0)));
        return QVariant();
    });
    member(
        QStringLiteral("CD1Color"), [this] { return QVariant(static_cast<qint64>(CD1Color)); },
        [this](const QVariant& v) { CD1Color = static_cast<uint32_t>(vb::toDouble(v)); });
}

// ----- time lines ---------------------------------------------------------------

void frmClientSites::cmdNewTimeLineElement_Click() {
    QVariantList front{0};
    for (Control* panel : {&picTimeLineShad, &picTimeLine}) {
        panel->setVisible(true);
        panel->call(QStringLiteral("ZOrder"), front);
    }
    setFocus(&txtTimeLineDesc);
}

void frmClientSites::cmdAddTimeLine_Click() {
    picTimeLine.setVisible(false);
    picTimeLineShad.setVisible(false);
    if (!txtTimeLineDesc.text().isEmpty())
        AddTimeLineRow();
    txtTimeLineDesc.setText(QString());
    ResetScheduleRows();
    LoadScheduleBars(CurrentSiteID);
}

void frmClientSites::cmdCancelTimeLine_Click() {
    picTimeLine.setVisible(false);
    picTimeLineShad.setVisible(false);
    txtTimeLineDesc.setText(QString());
}

void frmClientSites::AddTimeLineRow() {
    db::Recordset& rs = projects::newSharedRecordset(app_);
    rs.Open(QStringLiteral("SELECT * FROM ProjectTimeLines;"), projects::sharedConnection(app_),
            db::adOpenDynamic, db::adLockOptimistic, db::adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("SiteID")) = CurrentSiteID;
    rs.Fields(QStringLiteral("TimeLineDesc")) = txtTimeLineDesc.text();
    rs.Update();
    rs.Close();
    ResetScheduleRows();
}

void frmClientSites::ResetScheduleRows() {
    // 1. Day numbers counted from the range's origin, read in the system's date format.
    const QDate origin = sysfmt::dateFromText(RangeOrigin);
    const QDateTime now = clock::now();
    const int32_t first = vb::checkInt32(origin.daysTo(now.addDays(-RangeBeforeToday).date()));
    const int32_t last = vb::checkInt32(origin.daysTo(now.date().addDays(RangeAfterToday)));
    // 2.
    schedule_->clearAll();
    schedule_->setRowSetting(RowSettingPoints);
    schedule_->setFirstDay(first);
    schedule_->setLastDay(last);
    // 3. One row a time line, in the order the table gives them.
    db::Recordset& rs = projects::newSharedRecordset(app_);
    rs.Open(TimeLinesOfSite + QString::number(CurrentSiteID) + QueryEnd, projects::sharedConnection(app_),
            db::adOpenDynamic, db::adLockReadOnly, db::adCmdText);
    if (!rs.BOF() && !rs.EOF_()) {
        const int desc = rs.FieldOrdinal(QStringLiteral("TimeLineDesc"));
        while (!rs.EOF_()) {
            schedule_->addRow(db::textOf(rs.value(desc)));
            rs.MoveNext();
        }
    }
    rs.Close();
    // 4.
    schedule_->setRowsReady(true);
}

void frmClientSites::FillTimeLineList() {
    const QString none = QStringLiteral("N/A");
    cboTimeLine.clear();
    cboTimeLine.addItem(none);
    db::Recordset& rs = projects::newSharedRecordset(app_);
    rs.Open(TimeLinesOfSite + QString::number(CurrentSiteID) + QueryEnd, projects::sharedConnection(app_),
            db::adOpenDynamic, db::adLockOptimistic, db::adCmdText);
    if (!rs.BOF() && !rs.EOF_()) {
        const int desc = rs.FieldOrdinal(QStringLiteral("TimeLineDesc"));
        while (!rs.EOF_()) {
            cboTimeLine.addItem(db::textOf(rs.value(desc)));
            rs.MoveNext();
        }
    }
    rs.Close();
    cboTimeLine.setText(none);
}

// ----- the bars -----------------------------------------------------------------------

void frmClientSites::rebuildSchedule() {
    ResetScheduleRows();
    LoadScheduleBars(CurrentSiteID);
}

std::pair<int, int> frmClientSites::addBarOf(db::Recordset& rs) {
    // The row as a short; times and dates as whole numbers, a date rounded to the nearest day.
    const int row = vb::checkInt16(longField(rs, rs.FieldOrdinal(QStringLiteral("ProjectItem"))));
    const int32_t startTime = longField(rs, rs.FieldOrdinal(QStringLiteral("StartTime")));
    const int32_t endTime = longField(rs, rs.FieldOrdinal(QStringLiteral("EndTime")));
    const int32_t startDate = longField(rs, rs.FieldOrdinal(QStringLiteral("StartDate")));
    const int32_t endDate = longField(rs, rs.FieldOrdinal(QStringLiteral("EndDate")));
    return {row, schedule_->addBar(row, schedule::DayTime{startDate, startTime},
                                   schedule::DayTime{endDate, endTime})};
}

void frmClientSites::LoadScheduleBars(int32_t site) {
    // 1.
    db::Recordset& rs = projects::newSharedRecordset(app_);
    rs.Open(BookingsOfSite + QString::number(site) + QueryEnd, projects::sharedConnection(app_),
            db::adOpenDynamic, db::adLockReadOnly, db::adCmdText);
    if (!rs.BOF() && !rs.EOF_()) {
        const int text = rs.FieldOrdinal(QStringLiteral("BarText"));
        const int comments = rs.FieldOrdinal(QStringLiteral("Comments"));
        const int align = rs.FieldOrdinal(QStringLiteral("BarTextAlign"));
        const int key = rs.FieldOrdinal(QStringLiteral("ScheduleID"));
        const int colour = rs.FieldOrdinal(QStringLiteral("BarColour"));
        while (!rs.EOF_()) {
            // 2. and 3.
            const auto [row, bar] = addBarOf(rs);
            // 4. In this order: text, comment, alignment, key, colour, picture.
            schedule::Bar& b = schedule_->editBar(row, bar);
            b.text = db::textOf(rs.value(text));
            b.comment = db::textOf(rs.value(comments));
            b.align = vb::checkInt16(longField(rs, align));
            b.key = db::textOf(rs.value(key));
            const int32_t barColour = longField(rs, colour);
            if (barColour < 0 || barColour > 0xFFFFFF)
                raiseError(err::InvalidProcedureCall, QStringLiteral("Invalid colour value"));
            b.colour = static_cast<schedule::Colour>(barColour);
            schedule_->pictures.push_back(schedule_->picture);
            // 5.
            rs.MoveNext();
        }
    }
    rs.Close();
}

void frmClientSites::LoadBooking(int32_t id) {
    // 1.
    db::Recordset& rs = projects::newSharedRecordset(app_);
    rs.Open(OneBooking + QString::number(id) + QueryEnd, projects::sharedConnection(app_), db::adOpenDynamic,
            db::adLockReadOnly, db::adCmdText);
    // 2. The bar goes onto the chart once more, and the dialog takes the row's values as they stand.
    if (!rs.BOF() && !rs.EOF_()) {
        const auto [row, bar] = addBarOf(rs);
        DTP1.setPickedValue(rs.value(QStringLiteral("StartDate")));
        DTP2.setPickedValue(rs.value(QStringLiteral("EndDate")));
        STime.setPickedValue(rs.value(QStringLiteral("StartTime")));
        ETime.setPickedValue(rs.value(QStringLiteral("EndTime")));
        txtBarText.setText(db::textOf(rs.value(QStringLiteral("BarText"))));
        txtBarComments.setText(db::textOf(rs.value(QStringLiteral("Comments"))));
        schedule_->editBar(row, bar).align =
            vb::checkInt16(longField(rs, rs.FieldOrdinal(QStringLiteral("BarTextAlign"))));
        lblBarColour.setBackColor(
            static_cast<unsigned>(longField(rs, rs.FieldOrdinal(QStringLiteral("BarColour")))));
    }
    // 3.
    rs.Close();
}

void frmClientSites::SaveBooking(int16_t isNew, int32_t site) {
    // 1.
    const QString sql = isNew ? QStringLiteral("SELECT * FROM Schedule;")
                              : OneBooking + QString::number(module_.gSelectedScheduleID) + QueryEnd;
    db::Recordset& rs = projects::newSharedRecordset(app_);
    rs.Open(sql, projects::sharedConnection(app_), db::adOpenDynamic, db::adLockOptimistic, db::adCmdText);
    if (isNew)
        rs.AddNew();
    // 2. Every field, in this order; the style, alignment and image are fixed.
    rs.Fields(QStringLiteral("SiteID")) = site;
    rs.Fields(QStringLiteral("ProjectItem")) = module_.gBarRow;
    rs.Fields(QStringLiteral("StartDate")) = DTP1.prop(QStringLiteral("Value"));
    rs.Fields(QStringLiteral("StartTime")) = vb::toInt32(STime.prop(QStringLiteral("Value")));
    rs.Fields(QStringLiteral("EndDate")) = DTP2.prop(QStringLiteral("Value"));
    rs.Fields(QStringLiteral("EndTime")) = vb::toInt32(ETime.prop(QStringLiteral("Value")));
    rs.Fields(QStringLiteral("BarStyle")) = SavedBarStyle;
    rs.Fields(QStringLiteral("BarText")) = txtBarText.text();
    rs.Fields(QStringLiteral("BarTextAlign")) = SavedTextAlign;
    rs.Fields(QStringLiteral("BarColour")) = static_cast<qint64>(lblBarColour.backColor());
    rs.Fields(QStringLiteral("Comments")) = txtBarComments.text();
    rs.Fields(QStringLiteral("ImageIndex")) = SavedImageIndex;
    // 3.
    rs.Update();
    rs.Close();
}

void frmClientSites::DeleteBooking(int32_t key) {
    projects::runCommand(app_, QStringLiteral("DELETE * FROM Schedule WHERE (((Schedule.ScheduleID)=") +
                                   QString::number(key) + QueryEnd);
}

// ----- the gestures of the chart ------------------------------------------------------

void frmClientSites::showBookingDialog(bool shown) {
    ScheduleItem.setVisible(shown);
    ScheduleItemSch.setVisible(shown);
}

void frmClientSites::ctSchedule1_BarDrawn(EventArgs& args) {
    // Only a drawing that is complete and not cancelled opens the dialog.
    const bool complete = vb::toBool(args.value(2));
    const bool cancelled = vb::toBool(args.value(3));
    if (cancelled || !complete)
        return;
    const int row = vb::toInt16(args.value(0));
    const int bar = vb::toInt16(args.value(1));
    // 1.
    module_.gBarRow = static_cast<int16_t>(row);
    // 2.
    txtBarText.setText(QString());
    txtBarComments.setText(QString());
    lblBarColour.setBackColor(NewBarColour);
    // 3. From the chart.
    const schedule::ScheduleControl& chart = *schedule_;
    module_.gBarRowTitle = chart.rowText(row);
    module_.gBarStartTime = vb::checkInt16(chart.bar(row, bar).start.minutes);
    module_.gBarEndTime = vb::checkInt16(chart.bar(row, bar).end.minutes);
    module_.gBarStartDate = dateOfDay(chart.bar(row, bar).start.date);
    module_.gBarEndDate = dateOfDay(chart.bar(row, bar).end.date);
    module_.gBarStyle = vb::checkInt16(chart.bar(row, bar).style);
    // 4.
    module_.gIsNewBooking = NewBooking;
    // 5.
    DTP1.setPickedValue(module_.gBarStartDate);
    DTP2.setPickedValue(module_.gBarEndDate);
    STime.setPickedValue(module_.gBarStartTime);
    ETime.setPickedValue(module_.gBarEndTime);
    // 6.
    showBookingDialog(true);
}

void frmClientSites::ctSchedule1_BarChanged(EventArgs& args) {
    const int row = vb::toInt16(args.value(0));
    const int bar = vb::toInt16(args.value(1));
    // 1.
    txtBarText.setText(QString());
    txtBarComments.setText(QString());
    module_.gBarRow = static_cast<int16_t>(row);
    module_.gIsNewBooking = ChangedBooking;
    // 2.
    module_.gSelectedScheduleID = vb::toInt32(schedule_->bar(row, bar).key);
    // 3.
    LoadBooking(module_.gSelectedScheduleID);
    // 4. The event's values, as they come.
    DTP1.setPickedValue(args.value(5));
    DTP2.setPickedValue(args.value(6));
    STime.setPickedValue(args.value(3));
    ETime.setPickedValue(args.value(4));
    // 5.
    showBookingDialog(true);
}

void frmClientSites::ctSchedule1_BarActivated(EventArgs& args) {
    const int row = vb::toInt16(args.value(0));
    const int bar = vb::toInt16(args.value(1));
    module_.gIsNewBooking = ChangedBooking;
    module_.gBarRow = static_cast<int16_t>(row);
    module_.gSelectedScheduleID = vb::toInt32(schedule_->bar(row, bar).key);
    LoadBooking(module_.gSelectedScheduleID);
    showBookingDialog(true);
}

void frmClientSites::ctSchedule1_BarPointed(EventArgs& args) {
    const int row = vb::toInt16(args.value(0));
    const int bar = vb::toInt16(args.value(1));
    const schedule::Bar& b = schedule_->bar(row, bar);
    int16_t startTime = vb::checkInt16(b.start.minutes);
    int16_t endTime = vb::checkInt16(b.end.minutes);
    const QString tip = QStringLiteral(" ") + b.text + QStringLiteral("\r\n") + QStringLiteral("Comments: ") +
                        b.comment + QStringLiteral(" \n") + QStringLiteral(" From - ") +
                        sysfmt::generalDate(dateOfDay(b.start.date)) + QStringLiteral("  ") +
                        common::MinutesToTimeText(startTime) + QStringLiteral(" \n") +
                        QStringLiteral("   To - ") + sysfmt::generalDate(dateOfDay(b.end.date)) +
                        QStringLiteral("  ") + common::MinutesToTimeText(endTime) + QStringLiteral(" ");
    ctTips1.set(QStringLiteral("TipText"), tip);
}

// ----- the booking dialog -----------------------------------------------------------

void frmClientSites::cmdColourPick_Click() {
    // A cancelled dialog leaves its last colour, which is taken all the same.
    if (const std::optional<unsigned> chosen = app_.ui.colourDialog(CD1Color))
        CD1Color = *chosen;
    lblBarColour.setBackColor(CD1Color);
}

void frmClientSites::cmdSaveSchedule_Click() {
    SaveBooking(module_.gIsNewBooking, CurrentSiteID);
    showBookingDialog(false);
    rebuildSchedule();
}

void frmClientSites::cmdCancelSchedule_Click() {
    showBookingDialog(false);
    rebuildSchedule();
}

// ----- the buttons of the tab --------------------------------------------------------------

void frmClientSites::cmdDeleteTimeBar_Click() {
    // 1. Row and bar count from 1: a selection at 0 is none.
    const int row = schedule_->model().selectedRow();
    const int bar = schedule_->model().selectedBar();
    if (row < 1 || bar < 1) {
        app_.ui.msgBox(QStringLiteral("No Booking is Currently Selected"), ExclamationFlags, AppTitle);
        return;
    }
    // 2.
    if (app_.ui.msgBox(QStringLiteral("Are you sure you wish to Delete this Item!"), DeleteBookingFlags,
                       AppTitle) == mb::ResultYes) {
        // 3.
        const int32_t key = vb::toInt32(schedule_->bar(row, bar).key);
        DeleteBooking(key);
        rebuildSchedule();
    } else {
        // 4.
        app_.ui.msgBox(QStringLiteral("Booking Deletion canceled"), ExclamationFlags, AppTitle);
    }
}

void frmClientSites::cmdSchedBack_Click() {
    schedule_->setFirstDay(schedule_->firstDay() - BackFirstDays);
    schedule_->setLastDay(schedule_->lastDay() - BackLastDays);
}

void frmClientSites::cmdSchedForward_Click() {
    schedule_->setFirstDay(schedule_->firstDay() + ForwardFirstDays);
    schedule_->setLastDay(schedule_->lastDay() + ForwardLastDays);
}

void frmClientSites::cmdPrintSchedule_Click() {
    schedule_->printTitle = QStringLiteral("Schedule Print");
    schedule_->printChart();
}

} // namespace tessaly
