#pragma once

// The units of report layouts: every length of a report is in twips.
namespace tessaly::reports {

constexpr double TwipsPerInch = 1440.0; // a twip is a twentieth of a point
constexpr double TwipsPerPoint = 20.0;  // points of font sizes and line weights
constexpr double MmPerInch = 25.4;      // for sizes given in millimetres

} // namespace tessaly::reports
