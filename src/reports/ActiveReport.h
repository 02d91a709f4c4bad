#pragma once

#include "EngineObject.h"
#include "PageSettings.h"
#include "ReportPage.h"
#include "Section.h"

#include "core/port/ReportDocument.h"

#include <functional>
#include <memory>
#include <vector>

namespace tessaly {
class UiPort;
}

namespace tessaly::reports {

class ReportDataControl;

// A report: a layout of sections and controls in twips on a paper, an
// optional data control, and the events that its code handles. Run lays the
// sections onto pages: the report header on the first page, the page header
// and footer on every page, the detail once per row of the data (once when
// the report has no data source), the report footer after the last row.
// A section that does not fit the room left on a page starts a new page; one
// taller than a whole page is laid on a page of its own and cut off at the
// printable area. Nothing prints outside the margins.
//
// A report is also the document that the viewer window shows.
class ActiveReport : public EngineObject, public ReportDocument {
public:
    // `ui`: where Show opens the viewer; null for a report that is never shown.
    ActiveReport(QString name, UiPort* ui);
    ~ActiveReport() override;

    const QString& name() const { return name_; }
    QString typeName() const override { return name_; }

    QString Title;         // the report's title, also the PDF document's title
    QString Caption;       // the viewer window's caption
    QString DocumentName;  // the print job's name
    double PrintWidth = 0; // the width of the sections in twips
    PageSettings& pageSettings() { return *pageSettings_; }
    const PageSettings& pageSettings() const { return *pageSettings_; }

    // Design: sections in print order, controls, a data control.
    Section& addSection(SectionType type, const QString& name, double height);
    Section* section(SectionType type) const;
    Section* findSection(const QString& name) const;
    ReportControl* findControl(const QString& name) const;
    ReportDataControl& addDataControl(const QString& name);
    ReportDataControl* dataControl() const { return data_.get(); }

    // ActiveReport_ReportStart: before the first section is laid out and
    // before any data is read. ReportEnd: after the last page.
    std::function<void()> onReportStart;
    std::function<void()> onReportEnd;

    // Runs the report: the pages are made anew. No progress window is shown
    // either way; the argument is taken as the engine takes it.
    void Run(bool showProgress = false);
    PageCollection& Pages() { return *pages_; }
    const PageCollection& Pages() const { return *pages_; }
    // The number of the page being laid out, from 1; 0 before a run. The
    // run (PageBuilder) sets it as it starts each page.
    int PageNumber() const { return pageNumber_; }
    void setPageNumber(int number) { pageNumber_ = number; }

    // Opens the viewer window on the report, running it first when it has no pages.
    void Show(bool modal);
    // Ends this instance: the pages go and whoever holds the instance is told,
    // so that the next use of the report's name starts afresh.
    void Unload();
    std::function<void(ActiveReport&)> onUnload;

    // ReportDocument.
    QString caption() const override { return Caption; }
    QString documentName() const override { return DocumentName; }
    int pageCount() const override { return pages_->count(); }
    QSizeF pageSize(int index) const override { return pages_->page(index).size(); }
    void paintPage(int index, QPainter& painter, const QRectF& target) const override;
    void exportPdf(const QString& path) override;
    void exportTiff(const QString& path) override;

protected:
    AutoPtr child(const QString& name) const override;
    QStringList childNames() const override;

private:
    QString name_;
    UiPort* ui_;
    std::shared_ptr<PageSettings> pageSettings_;
    std::shared_ptr<PageCollection> pages_;
    std::vector<SectionPtr> sections_;
    std::shared_ptr<ReportDataControl> data_;
    int pageNumber_ = 0;
};

using ReportPtr = std::shared_ptr<ActiveReport>;

} // namespace tessaly::reports
