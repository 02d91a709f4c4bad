#pragma once

#include "ReportPage.h"

#include <QVariant>
#include <map>

namespace tessaly::db {
class Recordset;
}

namespace tessaly::reports {

class ActiveReport;
class Field;
class Section;

// One run of a report: lays its sections onto pages, binds fields to the
// rows of its data, keeps the summaries and raises the events in order.
class PageBuilder {
public:
    explicit PageBuilder(ActiveReport& report);
    void run(PageCollection& pages);

private:
    // The running figures of one summary field.
    struct Summary {
        int count = 0;
        double sum = 0;
        double min = 0;
        double max = 0;
        void add(double value);
        QVariant result(int function) const;
    };

    void collectSummaries();
    void detailRow(db::Recordset* row);
    void bindRow(db::Recordset& row);
    void bindSummaries(Section& section);
    // Raises the section's Format event and lays it at the current position;
    // `mayBreak`: a section that does not fit starts a new page first.
    void placeSection(Section* section, bool mayBreak);
    void layControls(const Section& section, double top);
    void startPage(bool first);
    void endPage();

    ActiveReport& report_;
    PageCollection* pages_ = nullptr;
    PagePtr page_;
    QRectF printable_;
    double y_ = 0;          // where the next section goes, twips from the paper's top
    double bodyBottom_ = 0; // where the page footer begins
    bool pageHasBody_ = false;
    std::map<Field*, Summary> grandTotals_;
    std::map<Field*, Summary> pageTotals_;
};

} // namespace tessaly::reports
