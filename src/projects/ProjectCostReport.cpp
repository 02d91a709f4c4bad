#include "ProjectCostReport.h"

#include "core/common/SystemFormats.h"
#include "core/db/DataControl.h"
#include "core/forms/DataBinding.h"
#include "core/runtime/Clock.h"
#include "projects/ProjectsModule.h"
#include "projects/frmClientSites.h"
#include "reports/Controls.h"
#include "reports/ReportDataControl.h"
#include "workspace/Application.h"

namespace tessaly::projects {

namespace {

using reports::Field;
using reports::Label;
using reports::LineControl;
using reports::Section;

// The paper: US Letter, upright, with margins of half an inch.
constexpr double Margin = 720;
constexpr double PrintWidth = 12240 - 2 * Margin;

// The columns of the rows and their heads, left edge and width.
struct Column {
    double left;
    double width;
};
constexpr Column ItemColumn{0, 3600};
constexpr Column TimeLineColumn{3720, 3360};
constexpr Column CostColumn{7200, 1680};
constexpr Column ActualColumn{9000, 1800};

// The heights of the sections and of one line of text.
constexpr double PageHeaderHeight = 1740;
constexpr double DetailHeight = 300;
constexpr double PageFooterHeight = 480;
constexpr double ReportFooterHeight = 1020;
constexpr double LineHeight = 270;

constexpr double TitleSize = 16; // points
constexpr double TextSize = 10;
constexpr double FooterSize = 8;
constexpr double HeavyRule = 2; // the weight of the rules under the heads and the totals

const QString MoneyFormat = QStringLiteral("#,##0.00");

template <class T> T& place(T& control, double left, double top, double width, double height) {
    control.Left = left;
    control.Top = top;
    control.Width = width;
    control.Height = height;
    return control;
}

Label& addLabel(Section& s, const char* name, const char* caption, double left, double top, double width) {
    auto& label = s.add(std::make_shared<Label>(QString::fromLatin1(name), QString::fromLatin1(caption)));
    label.FontSize = TextSize;
    return place(label, left, top, width, LineHeight);
}

Field& addField(Section& s, const char* name, const char* dataField, const Column& column, double top) {
    auto& field = s.add(std::make_shared<Field>(QString::fromLatin1(name)));
    field.DataField = QString::fromLatin1(dataField);
    field.FontSize = TextSize;
    return place(field, column.left, top, column.width, LineHeight);
}

Field& addMoney(Section& s, const char* name, const char* dataField, const Column& column, double top) {
    Field& field = addField(s, name, dataField, column, top);
    field.OutputFormat = MoneyFormat;
    field.Alignment = reports::text_align::Right;
    return field;
}

LineControl& addRule(Section& s, const char* name, double x1, double x2, double y, double weight) {
    auto& line = s.add(std::make_shared<LineControl>(QString::fromLatin1(name)));
    line.X1 = x1;
    line.X2 = x2;
    line.Y1 = line.Y2 = y;
    line.LineWeight = weight;
    return line;
}

void buildPageHeader(reports::ActiveReport& report) {
    Section& s =
        report.addSection(reports::SectionType::PageHeader, QStringLiteral("PageHeader"), PageHeaderHeight);
    Label& title = addLabel(s, "Label1", "Project Costs Report", 0, 0, PrintWidth);
    title.FontSize = TitleSize;
    title.FontBold = true;
    title.Height = 480;
    addLabel(s, "Label2", "Client:", 0, 600, 900).FontBold = true;
    addField(s, "txtClient", "", Column{900, PrintWidth - 900}, 600);
    addLabel(s, "Label3", "Site:", 0, 900, 900).FontBold = true;
    addField(s, "txtSite", "", Column{900, PrintWidth - 900}, 900);
    const double headTop = 1320;
    addLabel(s, "Label4", "Project Item", ItemColumn.left, headTop, ItemColumn.width).FontBold = true;
    addLabel(s, "Label5", "Associated Time Line", TimeLineColumn.left, headTop, TimeLineColumn.width)
        .FontBold = true;
    for (Label* head :
         {&addLabel(s, "Label6", "Estimated Cost", CostColumn.left, headTop, CostColumn.width),
          &addLabel(s, "Label7", "Actual Cost", ActualColumn.left, headTop, ActualColumn.width)}) {
        head->FontBold = true;
        head->Alignment = reports::text_align::Right;
    }
    addRule(s, "Line2", 0, PrintWidth, 1650, HeavyRule);
}

void buildDetail(reports::ActiveReport& report) {
    Section& s = report.addSection(reports::SectionType::Detail, QStringLiteral("Detail"), DetailHeight);
    addField(s, "Field1", "ProjectItem", ItemColumn, 15);
    addField(s, "Field2", "ProjectTimeLine", TimeLineColumn, 15);
    addMoney(s, "Field3", "Cost", CostColumn, 15);
    addMoney(s, "Field4", "ActualCost", ActualColumn, 15);
}

void buildPageFooter(reports::ActiveReport& report) {
    Section& s =
        report.addSection(reports::SectionType::PageFooter, QStringLiteral("PageFooter"), PageFooterHeight);
    addRule(s, "Line5", 0, PrintWidth, 60, 1);
    addLabel(s, "lbldate", "", 0, 150, PrintWidth / 2).FontSize = FooterSize;
    Label& page = addLabel(s, "lblPage", "", PrintWidth / 2, 150, PrintWidth / 2);
    page.FontSize = FooterSize;
    page.Alignment = reports::text_align::Right;
}

void buildReportFooter(reports::ActiveReport& report) {
    Section& s = report.addSection(reports::SectionType::ReportFooter, QStringLiteral("ReportFooter"),
                                   ReportFooterHeight);
    addRule(s, "Line3", CostColumn.left, PrintWidth, 60, 1);
    const double labelLeft = TimeLineColumn.left;
    const double labelWidth = CostColumn.left - labelLeft - 120;
    for (auto [label, caption, field, dataField, column, top] :
         {std::tuple{"Label8", "Estimated Cost Total:", "Field5", "Cost", CostColumn, 180.0},
          std::tuple{"Label9", "Actual Cost Total:", "Field6", "ActualCost", ActualColumn, 510.0}}) {
        Label& l = addLabel(s, label, caption, labelLeft, top, labelWidth);
        l.FontBold = true;
        l.Alignment = reports::text_align::Right;
        Field& sum = addMoney(s, field, dataField, column, top);
        sum.FontBold = true;
        sum.SummaryType = reports::summary_type::GrandTotal;
        sum.SummaryFunc = reports::summary_func::Sum;
    }
    addRule(s, "Line4", CostColumn.left, PrintWidth, 870, HeavyRule);
}

} // namespace

reports::ReportPtr makeProjectCostReport(Application& app) {
    auto report = std::make_shared<reports::ActiveReport>(CostReportName, &app.ui);
    report->Title = QStringLiteral("Project Cost Report");
    report->Caption = QStringLiteral("Project Cost Report");
    report->DocumentName = QStringLiteral("Tessaly - Project Cost Report");
    report->PrintWidth = PrintWidth;
    report->pageSettings().setMargins(Margin, Margin, Margin, Margin);
    buildPageHeader(*report);
    buildDetail(*report);
    buildPageFooter(*report);
    buildReportFooter(*report);
    reports::ReportDataControl& rs1 = report->addDataControl(QStringLiteral("RS1"));

    reports::ActiveReport& r = *report;
    auto& txtClient = static_cast<Field&>(*r.findControl(QStringLiteral("txtClient")));
    auto& txtSite = static_cast<Field&>(*r.findControl(QStringLiteral("txtSite")));
    // ActiveReport_ReportStart: before any row is read.
    report->onReportStart = [&app, &txtClient, &txtSite, &rs1] {
        auto& sites = static_cast<frmClientSites&>(app.form(QString::fromLatin1(frmClientSites::FormName)));
        txtClient.setText(sites.cboCilent.text());
        txtSite.setText(sites.txtSiteDetails(frmClientSites::SiteBox).text());
        rs1.ConnectionString = app.gConnectionString;
        rs1.Source = dataControlOf(sites.RS_ProjectCosts).RecordSource();
        rs1.Run();
    };
    // PageFooter_Format: the date and the page's number.
    auto& lbldate = static_cast<Label&>(*r.findControl(QStringLiteral("lbldate")));
    auto& lblPage = static_cast<Label&>(*r.findControl(QStringLiteral("lblPage")));
    r.findSection(QStringLiteral("PageFooter"))->onFormat = [&r, &lbldate, &lblPage] {
        lbldate.Caption = sysfmt::longDate(clock::today());
        lblPage.Caption = QStringLiteral("Page ") + QString::number(r.PageNumber());
    };
    return report;
}

reports::ActiveReport& newCostReport(Application& app, ProjectsModule& module) {
    module.costReport = makeProjectCostReport(app);
    module.costReport->onUnload = [&module](reports::ActiveReport& unloaded) {
        if (module.costReport.get() == &unloaded)
            module.costReport.reset();
    };
    return *module.costReport;
}

} // namespace tessaly::projects
