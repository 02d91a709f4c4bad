#include "workspace/commands/PageZoomCommands.h"

#include "canvas/api/CanvasCodes.h"
#include "core/runtime/Vb.h"
#include "workspace/Application.h"
#include "workspace/commands/CommandSupport.h"
#include "workspace/commands/GuideLines.h"
#include "workspace/commands/Registration.h"
#include "workspace/forms/frmPaper.h"
#include "workspace/frmMain.h"

namespace tessaly {

using namespace commands;

namespace {
constexpr int ZoomStep = 5;          // one Zoom In or Zoom Out, in percent
constexpr int ZoomMin = 10;          // the smallest zoom the steps reach
constexpr int ZoomLimit = 1001;      // Zoom In stays below this
constexpr int SliderDesign = 70;     // the slider's value until the first zoom command
constexpr int SliderMax = 1000;      // the slider's range ends
constexpr int SliderTicks = 100;     // a tick every so many percent
constexpr int SliderLarge = 10;      // a page step of the slider
constexpr int PortraitZoomLess = 25; // portrait pages are shown this much smaller
constexpr int ShortSide = 210;       // A4's short side in page millimetres
constexpr int LongSide = 295;        // A4's long side as Tessaly has it

namespace fit_mode = canvas::fit_mode;

constexpr int ZoomEntries[] = {10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 200, 300, 400, 500};

Control& pageZoomSlider(frmMain& form) {
    if (Control* c = form.find(QStringLiteral("PageZoom")))
        return *c;
    Control& slider = form.add(ControlKind::Slider, QStringLiteral("PageZoom"));
    slider.setToolTipText(QStringLiteral("Canvas Zoom"));
    slider.setProp(QStringLiteral("Min"), ZoomMin);
    slider.setProp(QStringLiteral("Max"), SliderMax);
    slider.setProp(QStringLiteral("SmallChange"), 1);
    slider.setProp(QStringLiteral("LargeChange"), SliderLarge);
    slider.setProp(QStringLiteral("TickFrequency"), SliderTicks);
    slider.setProp(QStringLiteral("Value"), SliderDesign);
    return slider;
}

// The program moves the slider without its Change: only the user's moves zoom.
void moveSlider(frmMain& form, int value) {
    pageZoomSlider(form).setProp(QStringLiteral("Value"), value);
}

void fit(frmMain& form, Application& app, const char* menu, int mode) {
    onClick(form, QString::fromLatin1(menu), [&app, mode] { invoke(app.gViewList, "FitTo", {mode}); });
}
} // namespace

void ChangePageOrientation(frmMain& form, Application& app, bool landscape) {
    // 1.
    app.ui.setMousePointer(pointer::Hourglass);
    // 2.
    put(app.gPage, "Width", landscape ? LongSide : ShortSide);
    put(app.gPage, "Height", landscape ? ShortSide : LongSide);
    // 3.
    put(app.gView, "ShowGuides", false);
    RelayGuideLines(app, landscape);
    // 4.
    const int16_t zoom =
        landscape ? app.gDefaultPageZoom : vb::checkInt16(app.gDefaultPageZoom - PortraitZoomLess);
    put(form.canvas1(), "Zoom", zoom);
    invoke(app.gViewList, "CenterPage");
    // 5.
    put(app.gPage, "Landscape", landscape);
    form.PageIsLandscape = landscape;
    // 6.
    put(app.gView, "ShowGuides", form.control(QStringLiteral("mnuPopup_ShowGuideLines")).checked());
    // 7. The printer's page setup opens every time, to match the new page.
    if (landscape)
        app.ui.setMousePointer(pointer::Default);
    invoke(form.canvas1(), "RefreshScreen");
    invoke(form.canvas1(), "ShowPageSetup");
    // 8.
    invoke(app.gViewList, "FitTo", {fit_mode::Page});
    // 9.
    if (!landscape)
        app.ui.setMousePointer(pointer::Default);
}

void registerPageZoomCommands(frmMain& form, Application& app) {
    pageZoomSlider(form);
    form.on(QStringLiteral("PageZoom"), QStringLiteral("Change"),
            [&form, &app](Control&, EventArgs&) { put(app.gView, "Zoom", pageZoomSlider(form).value()); });
    onClick(form, QStringLiteral("mnuView_Page_ZoomIn"), [&form, &app] {
        const int zoom = vb::toInt32(get(app.gView, "Zoom"));
        if (zoom + ZoomStep < ZoomLimit) {
            put(app.gView, "Zoom", zoom + ZoomStep);
            moveSlider(form, pageZoomSlider(form).value() + ZoomStep);
        }
    });
    onClick(form, QStringLiteral("mnuView_Page_ZoomOut"), [&form, &app] {
        const int zoom = vb::toInt32(get(app.gView, "Zoom"));
        if (zoom - ZoomStep >= ZoomMin) {
            put(app.gView, "Zoom", zoom - ZoomStep);
            moveSlider(form, pageZoomSlider(form).value() - ZoomStep);
        }
    });
    for (int percent : ZoomEntries)
        onClick(form, QStringLiteral("mnuView_Page_ZoomTo%1").arg(percent), [&form, &app, percent] {
            put(app.gView, "Zoom", percent);
            moveSlider(form, percent);
        });
    fit(form, app, "mnuView_Page_FitToPage", fit_mode::Page);
    fit(form, app, "mnuPopou_Page_FitToPage", fit_mode::Page);
    fit(form, app, "mnuView_Page_FitToSelection", fit_mode::Selection);
    fit(form, app, "mnuPopou_Page_FitToSelection", fit_mode::Selection);
    fit(form, app, "mnuView_Page_FitToScreenWidth", fit_mode::Width);
    fit(form, app, "mnuView_Page_FitToScreenHeight", fit_mode::Height);
    onClick(form, QStringLiteral("mnuPopup_Center"), [&app] { invoke(app.gViewList, "CenterPage"); });
    onClick(form, QStringLiteral("mnuPopup_Refresh"), [&form] { invoke(form.canvas1(), "RefreshScreen"); });
    onClick(form, QStringLiteral("mnuView_Page_Settings"), [&app] { app.show(app.form<frmPaper>(), true); });
    form.routine(QStringLiteral("ChangePageOrientation"), [&form, &app](QVariantList& a) {
        ChangePageOrientation(form, app, a.isEmpty() || vb::toBool(a[0]));
        return QVariant();
    });
}

} // namespace tessaly
