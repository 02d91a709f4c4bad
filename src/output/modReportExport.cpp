#include "modReportExport.h"

#include "ExportLayouts.h"

#include "core/forms/ApplicationBase.h"
#include "core/runtime/ResumeNext.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"

namespace tessaly::output {

namespace {
QString key(const QString& name) {
    return name.toLower();
}
} // namespace

modReportExport::modReportExport(ApplicationBase& app) : app_(app) {}

modReportExport::~modReportExport() = default;

reports::ReportPtr modReportExport::layout(const QString& name) {
    if (reports::ReportPtr existing = loadedLayout(name))
        return existing;
    reports::ReportPtr created = makeExportLayout(app_, name);
    created->onUnload = [this](reports::ActiveReport& unloaded) {
        const auto it = layouts_.find(key(unloaded.name()));
        if (it != layouts_.end() && it->second.get() == &unloaded)
            layouts_.erase(it);
    };
    layouts_[key(name)] = created;
    return created;
}

reports::ReportPtr modReportExport::layoutFor(bool landscape) {
    return layout(landscape ? LandscapeLayout : PortraitLayout);
}

reports::ReportPtr modReportExport::loadedLayout(const QString& name) const {
    const auto it = layouts_.find(key(name));
    return it == layouts_.end() ? nullptr : it->second;
}

void modReportExport::ExportReportToPDF(reports::ActiveReport& report, const QString& path, bool notify) {
    if (path.isEmpty())
        return;
    // The layout stays alive to the end, although step 6 unloads it.
    const auto keep = report.shared_from_this();
    // The routine's one trap, reached with the error's number at any statement.
    bool ended = false;
    const auto statement = [&](const std::function<void()>& step) {
        if (ended)
            return;
        const int number = resumeNext(step);
        if (number == err::PdfInUse)
            app_.ui.msgBox(PdfInUseMessage, mb::Information, AppTitle);
        else if (number != 0)
            ended = true;
    };
    statement([&] { pdfFilter_ = std::make_unique<reports::PdfExportFilter>(); });
    statement([&] { report.Run(false); });
    statement([&] { pdfFilter_->FileName = path; });
    statement([&] { pdfFilter_->Export(report.Pages()); });
    statement([&] { report.Unload(); });
    statement([&] { pdfFilter_.reset(); });
    statement([&] {
        if (notify)
            app_.ui.msgBox(PdfCompleted, mb::Information, AppTitle);
    });
}

void modReportExport::ExportReportToTIFF(reports::ActiveReport& report, const QString& path, bool notify) {
    if (path.isEmpty())
        return;
    const auto keep = report.shared_from_this();
    tiffFilter_ = std::make_unique<reports::TiffExportFilter>();
    report.Run(false);
    tiffFilter_->FileName = path;
    tiffFilter_->Export(report.Pages());
    report.Unload();
    tiffFilter_.reset();
    if (notify)
        app_.ui.msgBox(TiffCompleted, mb::Information, AppTitle);
}

void modReportExport::writeReport(reports::ActiveReport& report, const QString& path, bool pdf) {
    const auto keep = report.shared_from_this();
    report.Run(false);
    if (pdf) {
        reports::PdfExportFilter filter;
        filter.FileName = path;
        filter.Export(report.Pages());
    } else {
        reports::TiffExportFilter filter;
        filter.FileName = path;
        filter.Export(report.Pages());
    }
    report.Unload();
}

void modReportExport::callExport(bool pdf, QVariantList& args) {
    AutoPtr object = toObject(args.value(0));
    if (!object && args.value(0).metaType().id() == QMetaType::QString) {
        // A report by name: one of the two layouts, or a report the program
        // holds as a module variable (the project manager's cost report).
        const QString name = args.value(0).toString();
        const bool isLayout = name.compare(PortraitLayout, Qt::CaseInsensitive) == 0 ||
                              name.compare(LandscapeLayout, Qt::CaseInsensitive) == 0;
        if (!isLayout && app_.memberNames().contains(name, Qt::CaseInsensitive))
            object = toObject(app_.get(name));
        else
            object = layout(name);
    }
    auto* report = dynamic_cast<reports::ActiveReport*>(object.get());
    if (!report)
        raiseError(err::TypeMismatch, QStringLiteral("The first argument is not a report layout"));
    const QString path = vb::toText(args.value(1));
    const bool notify = vb::toBool(args.value(2, false));
    if (pdf)
        ExportReportToPDF(*report, path, notify);
    else
        ExportReportToTIFF(*report, path, notify);
}

QVariant modReportExport::get(const QString& name, const QVariantList& index) {
    for (const QString& n : {PortraitLayout, LandscapeLayout})
        if (n.compare(name, Qt::CaseInsensitive) == 0)
            return toVariant(layout(n));
    return AutoObject::get(name, index);
}

QVariant modReportExport::call(const QString& name, QVariantList& args) {
    if (name.compare(QLatin1String("ExportReportToPDF"), Qt::CaseInsensitive) == 0) {
        callExport(true, args);
        return QVariant();
    }
    if (name.compare(QLatin1String("ExportReportToTIFF"), Qt::CaseInsensitive) == 0) {
        callExport(false, args);
        return QVariant();
    }
    return AutoObject::call(name, args);
}

QStringList modReportExport::memberNames() const {
    return {QStringLiteral("ExportReportToPDF"), QStringLiteral("ExportReportToTIFF"), PortraitLayout,
            LandscapeLayout};
}

modReportExport& reportExportModule(ApplicationBase& app) {
    auto* module = dynamic_cast<modReportExport*>(toObject(app.get(ReportExportModuleName)).get());
    if (!module)
        raiseNoMember(app.typeName(), ReportExportModuleName);
    return *module;
}

} // namespace tessaly::output
