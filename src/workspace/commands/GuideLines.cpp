#include "workspace/commands/GuideLines.h"

#include "workspace/Application.h"
#include "workspace/commands/CommandSupport.h"

namespace tessaly {

namespace {
constexpr int ShortBound = 210; // the last guide position across the short side of the page
constexpr int LongBound = 290;  // the last guide position along the long side (short of the page's 295)

void fill(const AutoPtr& guides, int bound, int step) {
    for (int at = 0; step > 0 && at <= bound; at += step)
        commands::invoke(guides, "Add", {at});
}
} // namespace

void RelayGuideLines(Application& app, bool landscape) {
    commands::put(app.gView, "ShowGuides", false);
    commands::invoke(app.gHGuides, "Clear");
    commands::invoke(app.gVGuides, "Clear");
    const int step = app.gGridStep;
    fill(app.gHGuides, landscape ? ShortBound : LongBound, step);
    fill(app.gVGuides, landscape ? LongBound : ShortBound, step);
}

} // namespace tessaly
