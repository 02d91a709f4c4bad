#pragma once

namespace tessaly {

// One button of the tool strip cmdToolBarButton: its index, tool tip and the
// icon it shows (a resource of the program).
struct ToolButtonEntry {
    int index;
    const char* toolTip;
    const char* icon;
};

// The 37 buttons, indices 0 to 33, 36, 37 and 38 (34 and 35 do not exist).
inline constexpr ToolButtonEntry ToolButtons[] = {
    {0, "Copy", "copy"},
    {1, "Cut", "cut"},
    {2, "Paste", "paste"},
    {3, "Undo", "undo"},
    {4, "Redo", "redo"},
    {5, "Select Shape / Object", "select"},
    {6, "Rotate Shape / Object", "rotate"},
    {7, "Edit Points On The Selected Shape", "edit-points"},
    {8, "Group Shapes", "group"},
    {9, "Un Group Shapes", "ungroup"},
    {10, "Convert Shape To A Polygon", "polygon"},
    {11, "Send Shape / Object To The Back", "send-to-back"},
    {12, "Bring Shape / Object To The Front", "bring-to-front"},
    {13, "Send Shape / Object Backward One", "send-backward"},
    {14, "Bring Shape / Object Forward One", "bring-forward"},
    {15, "Center Page On Screen", "center-page"},
    {16, "Link Objects", "link"},
    {17, "Link Objects", "plan-type-1"},
    {18, "Link Objects", "plan-type-2"},
    {19, "Link Objects", "link-spare"},
    {20, "Horizontal Wall Section", "wall-horizontal"},
    {21, "Drawn Square / Rectangle", "rectangle"},
    {22, "Drawn Circle", "circle"},
    {23, "Drawn Arc", "arc"},
    {24, "Multi Point Wall Or Line", "wall-multi-point"},
    {25, "Single Drawn Wall Or Line", "wall-single"},
    {26, "Freehand Scribble", "scribble"},
    {27, "Change Page orentation To Portrate", "page-portrait"},
    {28, "Change Page orentation To Landscape", "page-landscape"},
    {29, "Vertical Wall Section", "wall-vertical"},
    {30, "View and edit the custom templates", "my-templates"},
    {31, "Hide Sidebar", "sidebar-hide"},
    {32, "Show Sidebar", "sidebar-show"},
    {33, "Delete the selected shape", "delete"},
    {36, "Add A Dimension Bar", "dimension-bar"},
    {37, "Insert Free Text", "free-text"},
    {38, "Add Text To The Selected Object", "text-to-shape"},
};

// Buttons on the strip along the top, in their order; -1 leaves a gap that
// separates two groups. The drawing tools stand on the
// "Drawing Objects" tab of the side bar instead.
inline constexpr int TopStripOrder[] = {0,  1,  2,  -1, 3,  4,  -1, 5,  6,  7,  -1, 8,  9,  10, -1, 11, 12,
                                        13, 14, -1, 15, 27, 28, -1, 16, 17, 18, 19, -1, 33, 30, -1, 31, 32};
// The drawing tools of the side bar, row by row.
inline constexpr int SideToolOrder[] = {20, 29, 24, 25, 26, 21, 22, 23, 36, 37, 38};

} // namespace tessaly
