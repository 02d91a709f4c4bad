#include "PageBuilder.h"

#include "ActiveReport.h"
#include "Controls.h"
#include "ReportDataControl.h"
#include "Section.h"

#include "core/db/Recordset.h"
#include "core/runtime/Vb.h"

#include <algorithm>
#include <vector>

namespace tessaly::reports {

namespace {
constexpr SectionType PrintOrder[] = {SectionType::ReportHeader, SectionType::PageHeader, SectionType::Detail,
                                      SectionType::PageFooter, SectionType::ReportFooter};
} // namespace

void PageBuilder::Summary::add(double value) {
    min = count == 0 ? value : std::min(min, value);
    max = count == 0 ? value : std::max(max, value);
    sum += value;
    ++count;
}

QVariant PageBuilder::Summary::result(int function) const {
    switch (function) {
    case summary_func::Count:
        return count;
    case summary_func::Avg:
        return count == 0 ? QVariant() : QVariant(sum / count);
    case summary_func::Min:
        return count == 0 ? QVariant() : QVariant(min);
    case summary_func::Max:
        return count == 0 ? QVariant() : QVariant(max);
    default:
        return sum;
    }
}

PageBuilder::PageBuilder(ActiveReport& report) : report_(report) {}

void PageBuilder::run(PageCollection& pages) {
    pages_ = &pages;
    pages.clear();
    report_.setPageNumber(0);
    if (report_.onReportStart)
        report_.onReportStart();
    printable_ = report_.pageSettings().printableArea();
    collectSummaries();
    ReportDataControl* data = report_.dataControl();
    const bool bound = data && !data->Source.isEmpty();
    if (bound && !data->hasRun())
        data->Run();
    startPage(true);
    if (bound) {
        db::Recordset& rows = data->recordset();
        if (!(rows.BOF() && rows.EOF_())) {
            rows.MoveFirst();
            for (; !rows.EOF_(); rows.MoveNext())
                detailRow(&rows);
        }
    } else {
        detailRow(nullptr);
    }
    placeSection(report_.section(SectionType::ReportFooter), true);
    endPage();
    if (report_.onReportEnd)
        report_.onReportEnd();
}

void PageBuilder::collectSummaries() {
    grandTotals_.clear();
    pageTotals_.clear();
    for (SectionType type : PrintOrder)
        if (Section* s = report_.section(type))
            for (const ControlPtr& c : s->controls())
                if (auto* f = dynamic_cast<Field*>(c.get()); f && f->SummaryType != summary_type::None)
                    grandTotals_[f] = Summary{};
}

void PageBuilder::detailRow(db::Recordset* row) {
    // The row's numbers, for the sums: the run's totals take them before the
    // detail prints, the page's once the detail has found its page.
    std::vector<std::pair<Field*, double>> numbers;
    if (row) {
        bindRow(*row);
        for (auto& [field, total] : grandTotals_) {
            if (field->DataField.isEmpty())
                continue;
            const QVariant v = row->value(field->DataField);
            if (v.isNull() || !vb::isNumeric(v))
                continue;
            total.add(vb::toDouble(v));
            numbers.emplace_back(field, vb::toDouble(v));
        }
    }
    placeSection(report_.section(SectionType::Detail), true);
    for (const auto& [field, number] : numbers)
        pageTotals_[field].add(number);
}

void PageBuilder::bindRow(db::Recordset& row) {
    for (SectionType type : PrintOrder)
        if (Section* s = report_.section(type))
            for (const ControlPtr& c : s->controls())
                if (auto* f = dynamic_cast<Field*>(c.get());
                    f && f->SummaryType == summary_type::None && !f->DataField.isEmpty())
                    f->setValue(row.value(f->DataField));
}

void PageBuilder::bindSummaries(Section& section) {
    for (const ControlPtr& c : section.controls()) {
        auto* f = dynamic_cast<Field*>(c.get());
        if (!f || f->SummaryType == summary_type::None)
            continue;
        const auto& totals = f->SummaryType == summary_type::PageTotal ? pageTotals_ : grandTotals_;
        const auto it = totals.find(f);
        f->setValue(it == totals.end() ? Summary{}.result(f->SummaryFunc)
                                       : it->second.result(f->SummaryFunc));
    }
}

void PageBuilder::placeSection(Section* section, bool mayBreak) {
    if (!section)
        return;
    bindSummaries(*section);
    if (section->onFormat)
        section->onFormat();
    if (!section->Visible)
        return;
    if (mayBreak && pageHasBody_ && y_ + section->Height > bodyBottom_) {
        endPage();
        startPage(false);
        bindSummaries(*section);
    }
    layControls(*section, y_);
    y_ += section->Height;
    if (section->type() != SectionType::PageHeader)
        pageHasBody_ = true;
}

void PageBuilder::layControls(const Section& section, double top) {
    const Placement where{*page_, QPointF(printable_.left(), top), printable_};
    for (const ControlPtr& c : section.controls())
        if (c->Visible)
            c->place(where);
}

void PageBuilder::startPage(bool first) {
    page_ = std::make_shared<ReportPage>(report_.pageSettings().paper(), printable_);
    report_.setPageNumber(report_.PageNumber() + 1);
    pageTotals_.clear();
    y_ = printable_.top();
    pageHasBody_ = false;
    const Section* footer = report_.section(SectionType::PageFooter);
    bodyBottom_ = printable_.bottom() - (footer && footer->Visible ? footer->Height : 0);
    if (first)
        placeSection(report_.section(SectionType::ReportHeader), false);
    placeSection(report_.section(SectionType::PageHeader), false);
}

void PageBuilder::endPage() {
    if (Section* footer = report_.section(SectionType::PageFooter)) {
        bindSummaries(*footer);
        if (footer->onFormat)
            footer->onFormat();
        if (footer->Visible)
            layControls(*footer, bodyBottom_);
    }
    pages_->append(page_);
}

} // namespace tessaly::reports
