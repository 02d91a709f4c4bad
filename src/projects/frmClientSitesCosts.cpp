// The project manager's tab 4 "Project Costs and Estimations": the site's
// cost lines in TDBGrid2 (the only place where an actual cost is entered),
// the lists of project items and time lines, the estimate total, the adding
// and deleting of a line, and the cost report.
//
// The total is worked out by walking the bound recordset from its first row
// to its last, so the grid's cursor stands at EOF after every pass.
#include "projects/frmClientSites.h"

#include "core/common/SystemFormats.h"
#include "core/db/Ado.h"
#include "core/db/DataControl.h"
#include "core/db/DbErrors.h"
#include "core/db/Recordset.h"
#include "core/db/Values.h"
#include "core/runtime/RuntimeError.h"
#include "projects/ProjectCostReport.h"
#include "projects/ProjectDb.h"
#include "projects/ProjectsModule.h"
#include "reports/ActiveReport.h"
#include "workspace/Application.h"

namespace tessaly {

namespace {

constexpr int ExclamationFlags = 48;               // OK, exclamation icon
constexpr int DeleteCostFlags = 292;               // Yes and No, question icon, No the default
constexpr int CostSettleMs = 500;                  // pause after a cost line is written or deleted
constexpr int TotalDecimals = 2;                   // the decimals of the estimate total
constexpr double CurrencyUnit = db::CurrencyScale; // ten-thousandths in one unit

} // namespace

void frmClientSites::registerCostHandlers() {
    on(cmdAddProjectCost.name(), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cmdAddProjectCost_Click(); });
    on(cmdDeleteItem.name(), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cmdDeleteItem_Click(); });
    on(cmdPrintCosts.name(), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cmdPrintCosts_Click(); });
}

void frmClientSites::enterCostsTab() {
    // 1. and 2.
    FillProjectItemList();
    FillTimeLineList();
    // 3. A cursor on a row sums the lines; with none, or at either end, the total stays as it is.
    db::Recordset& rs = costs().Recordset();
    if (!rs.EOF_() && !rs.BOF())
        showCostTotal();
}

void frmClientSites::FillProjectItemList() {
    db::Recordset& rs = projects::newSharedRecordset(app_);
    rs.Open(QStringLiteral("SELECT * FROM ProjectItems;"), projects::sharedConnection(app_),
            db::adOpenDynamic, db::adLockOptimistic, db::adCmdText);
    // With no items the combo keeps what it held.
    if (!rs.BOF() && !rs.EOF_()) {
        cboProjectItem.clear();
        const int item = rs.FieldOrdinal(QStringLiteral("ProjectItems"));
        while (!rs.EOF_()) {
            cboProjectItem.addItem(db::textOf(rs.value(item)));
            rs.MoveNext();
        }
    }
    rs.Close();
}

void frmClientSites::showCostTotal() {
    // The total lives for this pass only, as currency; the box holds its text.
    db::Recordset& rs = costs().Recordset();
    rs.MoveFirst();
    const int cost = rs.FieldOrdinal(QStringLiteral("Cost"));
    qint64 total = 0;
    while (!rs.EOF_()) {
        const QVariant value = rs.value(cost);
        if (value.isNull())
            db::dberr::raiseInvalidUseOfNull();
        if (__builtin_add_overflow(total, db::values::currencyFromVariant(value), &total))
            raiseError(err::Overflow, QStringLiteral("Overflow"));
        rs.MoveNext();
    }
    txtTotal.setText(sysfmt::currency(static_cast<double>(total) / CurrencyUnit, TotalDecimals));
}

void frmClientSites::cmdAddProjectCost_Click() {
    // The three inputs in order; the first empty one stops with its message.
    if (cboProjectItem.text().isEmpty()) {
        app_.ui.msgBox(QStringLiteral("Please enter a description for the project item..."), ExclamationFlags,
                       AppTitle);
        return;
    }
    if (cboTimeLine.text().isEmpty()) {
        app_.ui.msgBox(
            QStringLiteral(
                "Please enter a description for the accosiated time Llne or N/A if not applicable..."),
            ExclamationFlags, AppTitle);
        return;
    }
    if (txtCost.text().isEmpty()) {
        app_.ui.msgBox(QStringLiteral("Please enter a cost..."), ExclamationFlags, AppTitle);
        return;
    }
    db::Recordset& rs = costs().Recordset();
    rs.AddNew();
    try {
        rs.Fields(QStringLiteral("SiteID")) = CurrentSiteID;
        rs.Fields(QStringLiteral("ProjectItem")) = cboProjectItem.text();
        rs.Fields(QStringLiteral("ProjectTimeLine")) = cboTimeLine.text();
        // The text as typed: the field converts it, or refuses it.
        rs.Fields(QStringLiteral("Cost")) = txtCost.text();
        rs.Update();
    } catch (const RuntimeError&) {
        // The error goes on to the default handling; the refused line is not kept
        // pending, so that no later move or add writes it.
        if (rs.EditMode() != db::adEditNone)
            rs.CancelUpdate();
        throw;
    }
    app_.sleep(CostSettleMs);
    showCostTotal();
    cboProjectItem.setText(QString());
    cboTimeLine.setText(QString());
    txtCost.setText(QString());
}

void frmClientSites::cmdDeleteItem_Click() {
    if (app_.ui.msgBox(QStringLiteral("Are You Sure You Wish To Delete The Selected Cost"), DeleteCostFlags,
                       QStringLiteral("Confirm Cost Deletion")) != mb::ResultYes)
        return;
    // No guard: with no current line the recordset's own error comes.
    db::Recordset& rs = costs().Recordset();
    rs.Delete(db::adAffectCurrent);
    app_.sleep(CostSettleMs);
    // At either end the total keeps what it showed.
    if (!rs.EOF_() && !rs.BOF())
        showCostTotal();
}

void frmClientSites::cmdPrintCosts_Click() {
    // A new instance of the report for each print, shown modally.
    projects::newCostReport(app_, module_).Show(true);
}

} // namespace tessaly
