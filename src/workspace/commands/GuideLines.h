#pragma once

namespace tessaly {

class Application;

// Lays the automatic guide lines again: View.ShowGuides goes off, both guide
// lists are cleared (user lines included) and refilled at every gGridStep
// from 0 up to the fixed bounds of the orientation (landscape: horizontal
// lines to 210, vertical to 290; portrait the other way round). The caller
// decides what View.ShowGuides becomes afterwards. Used at start-up, on a
// change of scale and on a change of orientation.
void RelayGuideLines(Application& app, bool landscape);

} // namespace tessaly
