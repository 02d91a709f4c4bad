#pragma once

// The sizes that the project manager's tabs share, in twips.
namespace tessaly::layout {

constexpr int InnerWidth = 11400;
constexpr int InnerHeight = 8280;
constexpr int FrameExtra = 400; // the window's frame around its inside
constexpr int Margin = 120;

// The client row above the tabs.
constexpr int ClientRowTop = 900;
constexpr int ButtonHeight = 375;
constexpr int TabsTop = 1380;
// The tab strip's size, and where the tabs' content starts under their bar.
constexpr int TabsWidth = InnerWidth - 2 * Margin;
constexpr int TabsHeight = InnerHeight - TabsTop - Margin;
constexpr int TabContentTop = 540;
// The room inside a tab, right and bottom edges.
constexpr int TabContentRight = TabsWidth - Margin;
constexpr int TabContentBottom = TabsHeight - Margin;

constexpr int BoxHeight = 315;
constexpr int RowStep = 420;

// A small dialog over a tab: its shadow lies this far below and to the right.
constexpr int ShadowOffset = 90;
constexpr unsigned ShadowColour = 0x808080; // dark grey
constexpr unsigned PanelColour = 0xE0E0E0;  // light grey
constexpr int SmallButton = 1080;
// Room under the OK and Cancel buttons at a panel's foot.
constexpr int ButtonsBottomGap = 180;

} // namespace tessaly::layout
