#include "ActiveReport.h"

#include "PageBuilder.h"
#include "PdfExportFilter.h"
#include "ReportDataControl.h"
#include "TiffExportFilter.h"

#include "core/port/UiPort.h"
#include "core/runtime/Vb.h"

namespace tessaly::reports {

namespace {
// The platform's code of a modal Show.
constexpr int Modal = 1;
} // namespace

ActiveReport::ActiveReport(QString name, UiPort* ui)
    : name_(std::move(name)), ui_(ui), pageSettings_(std::make_shared<PageSettings>()),
      pages_(std::make_shared<PageCollection>()) {
    property(QStringLiteral("Name"), [this] { return name_; });
    property(
        QStringLiteral("Title"), [this] { return Title; },
        [this](const QVariant& v) { Title = vb::toText(v); });
    property(
        QStringLiteral("Caption"), [this] { return Caption; },
        [this](const QVariant& v) { Caption = vb::toText(v); });
    property(
        QStringLiteral("DocumentName"), [this] { return DocumentName; },
        [this](const QVariant& v) { DocumentName = vb::toText(v); });
    property(
        QStringLiteral("PrintWidth"), [this] { return PrintWidth; },
        [this](const QVariant& v) { PrintWidth = vb::toDouble(v); });
    property(QStringLiteral("PageNumber"), [this] { return pageNumber_; });
    property(QStringLiteral("PageSettings"), [this] { return toVariant(pageSettings_); });
    property(QStringLiteral("Pages"), [this] { return toVariant(pages_); });
    method(QStringLiteral("Run"), [this](QVariantList& a) {
        Run(!a.isEmpty() && vb::toBool(a[0]));
        return QVariant();
    });
    method(QStringLiteral("Show"), [this](QVariantList& a) {
        Show(!a.isEmpty() && vb::toInt32(a[0]) == Modal);
        return QVariant();
    });
}

ActiveReport::~ActiveReport() = default;

Section& ActiveReport::addSection(SectionType type, const QString& name, double height) {
    sections_.push_back(std::make_shared<Section>(name, type, height));
    return *sections_.back();
}

Section* ActiveReport::section(SectionType type) const {
    for (const SectionPtr& s : sections_)
        if (s->type() == type)
            return s.get();
    return nullptr;
}

Section* ActiveReport::findSection(const QString& name) const {
    for (const SectionPtr& s : sections_)
        if (s->name().compare(name, Qt::CaseInsensitive) == 0)
            return s.get();
    return nullptr;
}

ReportControl* ActiveReport::findControl(const QString& name) const {
    for (const SectionPtr& s : sections_)
        if (ReportControl* c = s->find(name))
            return c;
    return nullptr;
}

ReportDataControl& ActiveReport::addDataControl(const QString& name) {
    data_ = std::make_shared<ReportDataControl>(name);
    return *data_;
}

AutoPtr ActiveReport::child(const QString& name) const {
    for (const SectionPtr& s : sections_) {
        if (s->name().compare(name, Qt::CaseInsensitive) == 0)
            return s;
        if (ReportControl* c = s->find(name))
            return c->shared_from_this();
    }
    if (data_ && data_->name().compare(name, Qt::CaseInsensitive) == 0)
        return data_;
    return nullptr;
}

QStringList ActiveReport::childNames() const {
    QStringList names;
    for (const SectionPtr& s : sections_) {
        names << s->name();
        for (const ControlPtr& c : s->controls())
            names << c->name();
    }
    if (data_)
        names << data_->name();
    return names;
}

void ActiveReport::Run(bool) {
    PageBuilder(*this).run(*pages_);
}

void ActiveReport::Show(bool modal) {
    if (pages_->count() == 0)
        Run(false);
    if (ui_)
        ui_->showReport(std::static_pointer_cast<ActiveReport>(shared_from_this()), modal);
}

void ActiveReport::Unload() {
    pages_->clear();
    if (onUnload)
        onUnload(*this);
}

void ActiveReport::paintPage(int index, QPainter& painter, const QRectF& target) const {
    pages_->page(index).paint(painter, target);
}

void ActiveReport::exportPdf(const QString& path) {
    PdfExportFilter filter;
    filter.FileName = path;
    filter.Title = Title;
    filter.Export(*pages_);
}

void ActiveReport::exportTiff(const QString& path) {
    TiffExportFilter filter;
    filter.FileName = path;
    filter.Export(*pages_);
}

} // namespace tessaly::reports
