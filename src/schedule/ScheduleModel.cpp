#include "ScheduleModel.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <queue>

namespace tessaly::schedule {

int ScheduleModel::addBar(int row, const Bar& bar) {
    RowBars& r = bars_[row];
    r.bars.push_back(bar);
    r.dirty = true;
    ++totalBars_;
    return static_cast<int>(r.bars.size());
}

void ScheduleModel::removeLastBar(int row) {
    const auto it = bars_.find(row);
    if (it == bars_.end() || it->second.bars.empty())
        return;
    it->second.bars.pop_back();
    it->second.dirty = true;
    --totalBars_;
    if (selectedRow_ == row && selectedBar_ > static_cast<int>(it->second.bars.size()))
        select(0, 0);
}

const ScheduleModel::RowBars* ScheduleModel::rowBars(int row) const {
    const auto it = bars_.find(row);
    return it == bars_.end() ? nullptr : &it->second;
}

int ScheduleModel::barCount(int row) const {
    const RowBars* r = rowBars(row);
    return r ? static_cast<int>(r->bars.size()) : 0;
}

bool ScheduleModel::hasBar(int row, int bar) const {
    return bar >= 1 && bar <= barCount(row);
}

const Bar& ScheduleModel::bar(int row, int bar) const {
    return rowBars(row)->bars[static_cast<size_t>(bar - 1)];
}

Bar& ScheduleModel::editBar(int row, int bar) {
    RowBars& r = bars_.at(row);
    r.dirty = true;
    return r.bars[static_cast<size_t>(bar - 1)];
}

void ScheduleModel::forEachRow(const std::function<void(int, const std::vector<Bar>&)>& visit) const {
    for (const auto& [row, r] : bars_)
        if (!r.bars.empty())
            visit(row, r.bars);
}

void ScheduleModel::index(const RowBars& r) {
    const size_t n = r.bars.size();
    r.byStart.resize(n);
    std::iota(r.byStart.begin(), r.byStart.end(), 0);
    std::stable_sort(r.byStart.begin(), r.byStart.end(), [&](int a, int b) {
        return r.bars[static_cast<size_t>(a)].low() < r.bars[static_cast<size_t>(b)].low();
    });
    r.maxHigh.resize(n);
    double latest = -std::numeric_limits<double>::infinity();
    for (size_t i = 0; i < n; ++i) {
        latest = std::max(latest, r.bars[static_cast<size_t>(r.byStart[i])].high());
        r.maxHigh[i] = latest;
    }
    // Lanes: each bar takes the lowest lane free at its start, so that bars
    // overlapping in time lie one under the other.
    using Busy = std::pair<double, int>; // end, lane
    std::priority_queue<Busy, std::vector<Busy>, std::greater<>> busy;
    std::priority_queue<int, std::vector<int>, std::greater<>> free;
    r.lane.assign(n, 0);
    int lanes = 0;
    for (size_t i = 0; i < n; ++i) {
        const Bar& b = r.bars[static_cast<size_t>(r.byStart[i])];
        while (!busy.empty() && busy.top().first <= b.low()) {
            free.push(busy.top().second);
            busy.pop();
        }
        int lane = lanes;
        if (!free.empty()) {
            lane = free.top();
            free.pop();
        } else {
            ++lanes;
        }
        r.lane[static_cast<size_t>(r.byStart[i])] = lane;
        busy.emplace(b.high(), lane);
    }
    r.lanes = std::max(1, lanes);
    r.dirty = false;
}

void ScheduleModel::barsBetween(int row, double from, double to,
                                const std::function<void(const Placed&)>& visit) const {
    const RowBars* r = rowBars(row);
    if (!r || r->bars.empty())
        return;
    if (r->dirty)
        index(*r);
    // Bars before `first` all end before `from`; bars from `last` on start after `to`.
    const auto first = std::lower_bound(r->maxHigh.begin(), r->maxHigh.end(), from) - r->maxHigh.begin();
    for (auto i = static_cast<size_t>(first); i < r->byStart.size(); ++i) {
        const int at = r->byStart[i];
        const Bar& b = r->bars[static_cast<size_t>(at)];
        if (b.low() > to)
            break;
        if (b.high() >= from)
            visit(Placed{at + 1, r->lane[static_cast<size_t>(at)]});
    }
}

int ScheduleModel::lanes(int row) const {
    const RowBars* r = rowBars(row);
    if (!r || r->bars.empty())
        return 1;
    if (r->dirty)
        index(*r);
    return r->lanes;
}

int ScheduleModel::laneOf(int row, int bar) const {
    const RowBars* r = rowBars(row);
    if (!r || bar < 1 || bar > static_cast<int>(r->bars.size()))
        return 0;
    if (r->dirty)
        index(*r);
    return r->lane[static_cast<size_t>(bar - 1)];
}

void ScheduleModel::clear() {
    rows_.clear();
    bars_.clear();
    totalBars_ = 0;
    select(0, 0);
}

void ScheduleModel::select(int row, int bar) {
    selectedRow_ = row;
    selectedBar_ = bar;
}

} // namespace tessaly::schedule
