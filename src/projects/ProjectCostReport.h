#pragma once

#include "reports/ActiveReport.h"

namespace tessaly {
class Application;
struct ProjectsModule;
} // namespace tessaly

namespace tessaly::projects {

// The name of the cost report, as the program and scripts reach it.
inline const QString CostReportName = QStringLiteral("ProjectCostReport");

// A new instance of the cost report of the project manager's site on show:
//   page header   Label1 "Project Costs Report"; Label2 "Client:" with
//                 txtClient; Label3 "Site:" with txtSite; the column heads
//                 Label4 to Label7; the rule Line2;
//   detail        Field1 ProjectItem, Field2 ProjectTimeLine, Field3 Cost and
//                 Field4 ActualCost as "#,##0.00"; the data control RS1;
//   page footer   lbldate, lblPage and the rule Line5;
//   report footer Label8 "Estimated Cost Total:" with Field5, the sum of Cost,
//                 Label9 "Actual Cost Total:" with Field6, the sum of
//                 ActualCost, both "#,##0.00"; the rules Line3 and Line4.
// At its start, before any row is read, txtClient and txtSite take the
// client's and the site's texts from frmClientSites, and RS1 reads the grid's
// rows over a connection of its own. Each page footer takes the long date and
// "Page " with the page's number. Its viewer is captioned "Project Cost
// Report", its print job "Tessaly - Project Cost Report".
reports::ReportPtr makeProjectCostReport(Application& app);

// The module's instance of the cost report: a new one, held until it is
// unloaded (an export unloads it), so that the next use of the name starts afresh.
reports::ActiveReport& newCostReport(Application& app, ProjectsModule& module);

} // namespace tessaly::projects
