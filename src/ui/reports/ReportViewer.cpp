#include "ReportViewer.h"

#include "ReportPageView.h"

#include "core/port/ReportDocument.h"
#include "core/runtime/RuntimeError.h"

#include <QComboBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPageLayout>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace tessaly::ui {

namespace {
// The window's first size, in pixels.
constexpr QSize InitialSize{900, 760};
// The zoom box's entries after the percentages.
const QString FitPageText = QStringLiteral("Fit Page");
const QString FitWidthText = QStringLiteral("Fit Width");
constexpr double TwipsPerPoint = 20.0;
// Room the scroll area keeps around the page when fitting, in pixels.
constexpr int FitSlack = 4;

QToolButton* button(QWidget* parent, const QString& text, const QString& tip) {
    auto* b = new QToolButton(parent);
    b->setText(text);
    b->setToolTip(tip);
    b->setAutoRaise(true);
    return b;
}
} // namespace

ReportViewer::ReportViewer(std::shared_ptr<ReportDocument> report, QWidget* parent)
    : QWidget(parent, Qt::Window), report_(std::move(report)) {
    setWindowTitle(report_->caption().isEmpty() ? report_->documentName() : report_->caption());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    buildToolBar();
    scroll_ = new QScrollArea(this);
    scroll_->setAlignment(Qt::AlignCenter);
    scroll_->setBackgroundRole(QPalette::Dark);
    view_ = new ReportPageView(*report_, scroll_);
    scroll_->setWidget(view_);
    layout->addWidget(scroll_, 1);
    resize(InitialSize);
    refresh();
}

ReportViewer::~ReportViewer() = default;

void ReportViewer::buildToolBar() {
    auto* bar = new QWidget(this);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(4, 2, 4, 2);
    auto* printButton = button(bar, tr("Print..."), tr("Print the report"));
    auto* pdfButton = button(bar, tr("Export PDF..."), tr("Save the report as a PDF document"));
    auto* tiffButton = button(bar, tr("Export TIFF..."), tr("Save the report as a TIFF picture"));
    first_ = button(bar, QStringLiteral("|<"), tr("First page"));
    previous_ = button(bar, QStringLiteral("<"), tr("Previous page"));
    pageLabel_ = new QLabel(bar);
    next_ = button(bar, QStringLiteral(">"), tr("Next page"));
    last_ = button(bar, QStringLiteral(">|"), tr("Last page"));
    auto* out = button(bar, QStringLiteral("-"), tr("Zoom out"));
    zoomBox_ = new QComboBox(bar);
    // Editable, so that it shows a fitted zoom and takes a typed one.
    zoomBox_->setEditable(true);
    zoomBox_->setInsertPolicy(QComboBox::NoInsert);
    for (int z : ZoomSteps)
        zoomBox_->addItem(QStringLiteral("%1%").arg(z), z);
    zoomBox_->addItem(FitPageText, -1);
    zoomBox_->addItem(FitWidthText, -2);
    auto* in = button(bar, QStringLiteral("+"), tr("Zoom in"));
    for (QWidget* w : std::initializer_list<QWidget*>{printButton, pdfButton, tiffButton})
        row->addWidget(w);
    row->addSpacing(16);
    for (QWidget* w : std::initializer_list<QWidget*>{first_, previous_, pageLabel_, next_, last_})
        row->addWidget(w);
    row->addSpacing(16);
    for (QWidget* w : std::initializer_list<QWidget*>{out, zoomBox_, in})
        row->addWidget(w);
    row->addStretch(1);
    static_cast<QVBoxLayout*>(layout())->addWidget(bar);

    connect(printButton, &QToolButton::clicked, this, &ReportViewer::print);
    connect(pdfButton, &QToolButton::clicked, this, [this] { askAndExport(true); });
    connect(tiffButton, &QToolButton::clicked, this, [this] { askAndExport(false); });
    connect(first_, &QToolButton::clicked, this, [this] { showPage(0); });
    connect(previous_, &QToolButton::clicked, this, [this] { showPage(page_ - 1); });
    connect(next_, &QToolButton::clicked, this, [this] { showPage(page_ + 1); });
    connect(last_, &QToolButton::clicked, this, [this] { showPage(report_->pageCount() - 1); });
    connect(in, &QToolButton::clicked, this, &ReportViewer::zoomIn);
    connect(out, &QToolButton::clicked, this, &ReportViewer::zoomOut);
    connect(zoomBox_->lineEdit(), &QLineEdit::editingFinished, this, [this] {
        QString typed = zoomBox_->lineEdit()->text().trimmed();
        typed.remove(QLatin1Char('%'));
        bool ok = false;
        const int percent = typed.toInt(&ok);
        if (ok)
            setZoom(percent);
        else
            refresh();
    });
    connect(zoomBox_, &QComboBox::activated, this, [this](int index) {
        const int choice = zoomBox_->itemData(index).toInt();
        if (choice == -1)
            fitPage();
        else if (choice == -2)
            fitWidth();
        else
            setZoom(choice);
    });
}

QString ReportViewer::pageText() const {
    return tr("Page %1 of %2").arg(report_->pageCount() == 0 ? 0 : page_ + 1).arg(report_->pageCount());
}

void ReportViewer::refresh() {
    const int count = report_->pageCount();
    pageLabel_->setText(pageText());
    first_->setEnabled(page_ > 0);
    previous_->setEnabled(page_ > 0);
    next_->setEnabled(page_ + 1 < count);
    last_->setEnabled(page_ + 1 < count);
    zoomBox_->setEditText(QStringLiteral("%1%").arg(zoom_));
    view_->show(page_, zoom_);
}

void ReportViewer::showPage(int index) {
    page_ = std::clamp(index, 0, std::max(0, report_->pageCount() - 1));
    refresh();
}

void ReportViewer::setZoom(int percent) {
    zoom_ = std::clamp(percent, ZoomSteps[0], ZoomSteps[std::size(ZoomSteps) - 1]);
    refresh();
}

void ReportViewer::zoomIn() {
    for (int z : ZoomSteps)
        if (z > zoom_)
            return setZoom(z);
}

void ReportViewer::zoomOut() {
    for (auto it = std::rbegin(ZoomSteps); it != std::rend(ZoomSteps); ++it)
        if (*it < zoom_)
            return setZoom(*it);
}

void ReportViewer::fitPage() {
    const QSize paper = view_->paperPixels() * 100 / std::max(1, zoom_);
    const QSize room = scroll_->viewport()->size() -
                       QSize(2 * ReportPageView::Margin + FitSlack, 2 * ReportPageView::Margin + FitSlack);
    if (paper.isEmpty())
        return;
    setZoom(std::min(room.width() * 100 / paper.width(), room.height() * 100 / paper.height()));
}

void ReportViewer::fitWidth() {
    const QSize paper = view_->paperPixels() * 100 / std::max(1, zoom_);
    const int room = scroll_->viewport()->width() - 2 * ReportPageView::Margin - FitSlack -
                     scroll_->verticalScrollBar()->sizeHint().width();
    if (paper.isEmpty())
        return;
    setZoom(room * 100 / paper.width());
}

void ReportViewer::printTo(QPrinter& printer) const {
    const int count = report_->pageCount();
    if (count == 0)
        return;
    printer.setDocName(report_->documentName());
    printer.setFullPage(true);
    const auto layoutFor = [](const QSizeF& twips) {
        const bool landscape = twips.width() > twips.height();
        const QSizeF points = (landscape ? twips.transposed() : twips) / TwipsPerPoint;
        return QPageLayout(QPageSize(points, QPageSize::Point),
                           landscape ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF());
    };
    const int from = printer.fromPage() > 0 ? printer.fromPage() - 1 : 0;
    const int to = printer.toPage() > 0 ? std::min(count, printer.toPage()) - 1 : count - 1;
    printer.setPageLayout(layoutFor(report_->pageSize(from)));
    QPainter painter;
    if (!painter.begin(&printer))
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    for (int i = from; i <= to; ++i) {
        if (i > from) {
            printer.setPageLayout(layoutFor(report_->pageSize(i)));
            printer.newPage();
        }
        report_->paintPage(i, painter, printer.paperRect(QPrinter::DevicePixel));
    }
    painter.end();
}

void ReportViewer::print() {
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, this);
    dialog.setMinMax(1, report_->pageCount());
    if (dialog.exec() != QDialog::Accepted)
        return;
    printTo(printer);
}

bool ReportViewer::exportTo(const QString& path, bool pdf) {
    try {
        if (pdf)
            report_->exportPdf(path);
        else
            report_->exportTiff(path);
    } catch (const RuntimeError& e) {
        // Shown over the viewer without blocking the caller.
        auto* box =
            new QMessageBox(QMessageBox::Critical, windowTitle(), e.description(), QMessageBox::Ok, this);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->open();
        return false;
    }
    return true;
}

void ReportViewer::askAndExport(bool pdf) {
    const QString filter = pdf ? tr("PDF (*.pdf)") : tr("TIFF (*.tiff *.tif)");
    QFileDialog dialog(this, pdf ? tr("Export To PDF") : tr("Export To TIFF"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilter(filter);
    dialog.setDefaultSuffix(pdf ? QStringLiteral("pdf") : QStringLiteral("tiff"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    exportTo(dialog.selectedFiles().constFirst(), pdf);
}

} // namespace tessaly::ui
