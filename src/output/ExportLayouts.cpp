#include "ExportLayouts.h"

#include "core/files/FileSystem.h"
#include "core/forms/ApplicationBase.h"
#include "core/runtime/RuntimeError.h"
#include "metafile/Picture.h"
#include "reports/Controls.h"

namespace tessaly::output {

namespace {

// The report title of both layouts.
const QString Title = QStringLiteral("Tessaly Export Ouput");
// How ImgEMF fills its box: the whole picture, as large as fits, its
// proportions kept (size mode 2), in the middle of the box (alignment 2).
constexpr int ImgSizeMode = reports::size_mode::Zoom;
constexpr int ImgAlignment = reports::picture_align::Center;

// The numbers of one layout, all in twips.
struct LayoutNumbers {
    const QString& name;
    double paperWidth;  // stored paper width (as for portrait)
    double paperHeight; // stored paper height
    int orientation;    // 1 portrait, 2 landscape
    double margins[4];  // in their stored order: left, right, top, bottom
    double printWidth;
    double detailHeight;
    double imgLeft, imgTop, imgWidth, imgHeight; // ImgEMF within Detail
};

const LayoutNumbers Portrate{
    PortraitLayout, 12240, 15840, reports::orientation::Portrait, {0, 0, 0, 0}, 12210, 16740, 425, 472,
    11150,          15780};
const LayoutNumbers Landscape{LandscapeLayout,
                              12240,
                              15840,
                              reports::orientation::Landscape,
                              {360, 360, 0, 360},
                              16590,
                              11640,
                              510,
                              567,
                              15818,
                              10772};

// ActiveReport_ReportStart of both layouts: ImgEMF takes the picture of the
// application folder's PrintTemp.emf, loaded from its path alone.
void loadPrintTemp(ApplicationBase& app, reports::ImageControl& image) {
    try {
        image.setPicture(std::make_shared<const metafile::Picture>(
            metafile::loadPicture(fs::toHost(app.home.appPath() + PrintTempName))));
    } catch (const RuntimeError&) {
        image.setPicture(nullptr);
    }
}

} // namespace

reports::ReportPtr makeExportLayout(ApplicationBase& app, const QString& name) {
    const LayoutNumbers* numbers = nullptr;
    for (const LayoutNumbers* n : {&Portrate, &Landscape})
        if (n->name.compare(name, Qt::CaseInsensitive) == 0)
            numbers = n;
    if (!numbers)
        raiseError(err::InvalidProcedureCall, QStringLiteral("No report layout named %1").arg(name));
    const LayoutNumbers& n = *numbers;
    auto report = std::make_shared<reports::ActiveReport>(n.name, &app.ui);
    report->Title = Title;
    report->PrintWidth = n.printWidth;
    reports::PageSettings& page = report->pageSettings();
    page.PaperWidth = n.paperWidth;
    page.PaperHeight = n.paperHeight;
    page.Orientation = n.orientation;
    page.setMargins(n.margins[0], n.margins[1], n.margins[2], n.margins[3]);
    report->addSection(reports::SectionType::PageHeader, QStringLiteral("PageHeader"), 0);
    reports::Section& detail =
        report->addSection(reports::SectionType::Detail, QStringLiteral("Detail"), n.detailHeight);
    report->addSection(reports::SectionType::PageFooter, QStringLiteral("PageFooter"), 0);
    auto& img = detail.add(std::make_shared<reports::ImageControl>(QStringLiteral("ImgEMF")));
    img.Left = n.imgLeft;
    img.Top = n.imgTop;
    img.Width = n.imgWidth;
    img.Height = n.imgHeight;
    img.SizeMode = ImgSizeMode;
    img.PictureAlignment = ImgAlignment;
    report->onReportStart = [&app, &img] { loadPrintTemp(app, img); };
    return report;
}

} // namespace tessaly::output
