#pragma once

#include "ScheduleDesign.h"

#include <QString>
#include <QVariant>
#include <algorithm>
#include <functional>
#include <map>
#include <vector>

namespace tessaly::schedule {

// The colour of a bar that is given none: a light blue.
constexpr Colour DefaultBarColour = 0xF0C88C;
// The style of a bar that is given none: a plain filled bar.
constexpr int DefaultBarStyle = 1;

// How a bar's text stands in the bar (the platform's alignment values).
namespace text_align {
constexpr int Left = 0;
constexpr int Right = 1;
constexpr int Centre = 2;
} // namespace text_align

// One bar of the chart as the control holds it.
struct Bar {
    DayTime start;
    DayTime end;
    QString text;
    QString comment;
    QString key;
    int align = text_align::Left;
    Colour colour = DefaultBarColour;
    int style = DefaultBarStyle;

    // The instants of the two ends in the order they lie in time: a bar whose
    // end precedes its start spans from its end to its start.
    double low() const { return std::min(start.instant(), end.instant()); }
    double high() const { return std::max(start.instant(), end.instant()); }
    bool reversed() const { return end.instant() < start.instant(); }
    bool zeroLength() const { return end.instant() == start.instant(); }
};

// The rows and bars of the chart, the design range and the selection.
//
// Rows are counted from 1 in the order they were added and carry a title.
// Bars belong to a row number and are counted from 1 within it; a bar may
// name a row that does not exist (it is kept, and shown once such a row
// exists). Each row keeps an index of its bars by time, built when first
// needed after a change: the bars in order of their start, the latest end up
// to each of them, and the lane of each bar, so that bars that overlap in time
// stack within the row.
class ScheduleModel {
public:
    // --- rows -------------------------------------------------------------
    int rowCount() const { return static_cast<int>(rows_.size()); }
    bool hasRow(int row) const { return row >= 1 && row <= rowCount(); }
    void addRow(const QString& text) { rows_.push_back(text); }
    const QString& rowText(int row) const { return rows_[static_cast<size_t>(row - 1)]; }
    const std::vector<QString>& rows() const { return rows_; }

    // --- bars -------------------------------------------------------------
    // Adds a bar to a row (which need not exist); returns its number in the row.
    int addBar(int row, const Bar& bar);
    // Takes the last bar of a row away (a drawing that its handler refused).
    void removeLastBar(int row);
    int barCount(int row) const;
    int totalBars() const { return totalBars_; }
    bool hasBar(int row, int bar) const;
    const Bar& bar(int row, int bar) const;
    // A bar to change; the row's index is rebuilt when next needed.
    Bar& editBar(int row, int bar);
    // Every row number that holds bars, in ascending order, with its bars.
    void forEachRow(const std::function<void(int row, const std::vector<Bar>& bars)>& visit) const;

    // The bars of a row that lie in [from, to] (days), in order of their
    // start: their numbers and lanes. `lanes` is the row's number of lanes.
    struct Placed {
        int bar;  // number in the row
        int lane; // 0 at the top
    };
    void barsBetween(int row, double from, double to, const std::function<void(const Placed&)>& visit) const;
    int lanes(int row) const;
    // The lane of one bar in its row.
    int laneOf(int row, int bar) const;

    // Removes every row and bar and the selection.
    void clear();

    // --- selection ----------------------------------------------------------
    int selectedRow() const { return selectedRow_; }
    int selectedBar() const { return selectedBar_; }
    void select(int row, int bar);

private:
    struct RowBars {
        std::vector<Bar> bars;
        // The index by time, valid while !dirty.
        mutable bool dirty = true;
        mutable std::vector<int> byStart;    // bar positions ordered by low()
        mutable std::vector<double> maxHigh; // the latest high() up to each of byStart
        mutable std::vector<int> lane;       // lane of each bar, by position
        mutable int lanes = 1;
    };
    const RowBars* rowBars(int row) const;
    static void index(const RowBars& r);

    std::vector<QString> rows_;
    std::map<int, RowBars> bars_;
    int totalBars_ = 0;
    int selectedRow_ = 0;
    int selectedBar_ = 0;
};

} // namespace tessaly::schedule
