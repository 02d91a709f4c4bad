#pragma once

#include <cstdint>

namespace tessaly::templates {

// What one drawing scale brings with it: the guide step and the wall widths
// of the main window, the text sizes its two scale routines give, and the
// depth of the masks of door and window symbols drawn for it.
struct ScaleRow {
    int value;              // the denominator: 50 for 1:50
    int16_t gridStep;       // page millimetres between guide lines
    int16_t externalWall;   // external wall width: page millimetres, or line units of a drawn wall
    int16_t internalWall;   // internal wall width
    int16_t fontBySetScale; // TextFontSize given by SetScale
    int16_t fontByBox;      // TextFontSize given by the scale box
};

// Every scale, in the order the scale routines compare them. At 1:400 and
// 1:500 the two routines give different font sizes.
inline constexpr ScaleRow ScaleTable[] = {
    {1, 10, 4, 3, 16, 16}, {10, 100, 4, 3, 14, 14}, {50, 20, 3, 2, 12, 12}, {100, 10, 3, 2, 10, 10},
    {200, 5, 2, 1, 9, 9},  {300, 5, 2, 1, 8, 8},    {400, 5, 1, 0, 8, 6},   {500, 5, 1, 0, 8, 6},
};

// The row of a scale denominator, or nullptr for one the table lacks.
constexpr const ScaleRow* scaleRow(int value) {
    for (const ScaleRow& row : ScaleTable)
        if (row.value == value)
            return &row;
    return nullptr;
}

// The thickest wall at a scale, in page millimetres: what a door or window
// mask clears (0 for a scale the table lacks).
constexpr int widestWall(int value) {
    const ScaleRow* row = scaleRow(value);
    return row ? row->externalWall : 0;
}

} // namespace tessaly::templates
