#pragma once

#include <cstdint>

// Record numbers and GDI constants of the enhanced (EMF) and old-style (WMF)
// Windows metafile formats, as the published formats number them.
namespace tessaly::metafile {

namespace emr {
constexpr uint32_t Header = 1;
constexpr uint32_t PolyBezier = 2;
constexpr uint32_t Polygon = 3;
constexpr uint32_t Polyline = 4;
constexpr uint32_t PolyBezierTo = 5;
constexpr uint32_t PolylineTo = 6;
constexpr uint32_t PolyPolyline = 7;
constexpr uint32_t PolyPolygon = 8;
constexpr uint32_t SetWindowExtEx = 9;
constexpr uint32_t SetWindowOrgEx = 10;
constexpr uint32_t SetViewportExtEx = 11;
constexpr uint32_t SetViewportOrgEx = 12;
constexpr uint32_t SetBrushOrgEx = 13;
constexpr uint32_t Eof = 14;
constexpr uint32_t SetPixelV = 15;
constexpr uint32_t SetMapperFlags = 16;
constexpr uint32_t SetMapMode = 17;
constexpr uint32_t SetBkMode = 18;
constexpr uint32_t SetPolyFillMode = 19;
constexpr uint32_t SetRop2 = 20;
constexpr uint32_t SetStretchBltMode = 21;
constexpr uint32_t SetTextAlign = 22;
constexpr uint32_t SetTextColor = 24;
constexpr uint32_t SetBkColor = 25;
constexpr uint32_t OffsetClipRgn = 26;
constexpr uint32_t MoveToEx = 27;
constexpr uint32_t ExcludeClipRect = 29;
constexpr uint32_t IntersectClipRect = 30;
constexpr uint32_t ScaleViewportExtEx = 31;
constexpr uint32_t ScaleWindowExtEx = 32;
constexpr uint32_t SaveDc = 33;
constexpr uint32_t RestoreDc = 34;
constexpr uint32_t SetWorldTransform = 35;
constexpr uint32_t ModifyWorldTransform = 36;
constexpr uint32_t SelectObject = 37;
constexpr uint32_t CreatePen = 38;
constexpr uint32_t CreateBrushIndirect = 39;
constexpr uint32_t DeleteObject = 40;
constexpr uint32_t AngleArc = 41;
constexpr uint32_t Ellipse = 42;
constexpr uint32_t Rectangle = 43;
constexpr uint32_t RoundRect = 44;
constexpr uint32_t Arc = 45;
constexpr uint32_t Chord = 46;
constexpr uint32_t Pie = 47;
constexpr uint32_t SelectPalette = 48;
constexpr uint32_t LineTo = 54;
constexpr uint32_t ArcTo = 55;
constexpr uint32_t SetMiterLimit = 58;
constexpr uint32_t BeginPath = 59;
constexpr uint32_t EndPath = 60;
constexpr uint32_t CloseFigure = 61;
constexpr uint32_t FillPath = 62;
constexpr uint32_t StrokeAndFillPath = 63;
constexpr uint32_t StrokePath = 64;
constexpr uint32_t FlattenPath = 65;
constexpr uint32_t WidenPath = 66;
constexpr uint32_t SelectClipPath = 67;
constexpr uint32_t AbortPath = 68;
constexpr uint32_t GdiComment = 70;
constexpr uint32_t FillRgn = 71;
constexpr uint32_t FrameRgn = 72;
constexpr uint32_t InvertRgn = 73;
constexpr uint32_t PaintRgn = 74;
constexpr uint32_t ExtSelectClipRgn = 75;
constexpr uint32_t BitBlt = 76;
constexpr uint32_t StretchBlt = 77;
constexpr uint32_t StretchDiBits = 81;
constexpr uint32_t ExtCreateFontIndirectW = 82;
constexpr uint32_t ExtTextOutA = 83;
constexpr uint32_t ExtTextOutW = 84;
constexpr uint32_t PolyBezier16 = 85;
constexpr uint32_t Polygon16 = 86;
constexpr uint32_t Polyline16 = 87;
constexpr uint32_t PolyBezierTo16 = 88;
constexpr uint32_t PolylineTo16 = 89;
constexpr uint32_t PolyPolyline16 = 90;
constexpr uint32_t PolyPolygon16 = 91;
constexpr uint32_t CreateMonoBrush = 93;
constexpr uint32_t CreateDibPatternBrushPt = 94;
constexpr uint32_t ExtCreatePen = 95;
constexpr uint32_t SetIcmMode = 98;
constexpr uint32_t AlphaBlend = 114;
} // namespace emr

namespace meta {
constexpr uint16_t Eof = 0x0000;
constexpr uint16_t SaveDc = 0x001E;
constexpr uint16_t SetBkColor = 0x0201;
constexpr uint16_t SetBkMode = 0x0102;
constexpr uint16_t SetMapMode = 0x0103;
constexpr uint16_t SetRop2 = 0x0104;
constexpr uint16_t SetPolyFillMode = 0x0106;
constexpr uint16_t SetStretchBltMode = 0x0107;
constexpr uint16_t SetTextColor = 0x0209;
constexpr uint16_t SetWindowOrg = 0x020B;
constexpr uint16_t SetWindowExt = 0x020C;
constexpr uint16_t SetViewportOrg = 0x020D;
constexpr uint16_t SetViewportExt = 0x020E;
constexpr uint16_t OffsetWindowOrg = 0x020F;
constexpr uint16_t OffsetViewportOrg = 0x0211;
constexpr uint16_t LineTo = 0x0213;
constexpr uint16_t MoveTo = 0x0214;
constexpr uint16_t ExcludeClipRect = 0x0415;
constexpr uint16_t IntersectClipRect = 0x0416;
constexpr uint16_t Arc = 0x0817;
constexpr uint16_t Ellipse = 0x0418;
constexpr uint16_t Pie = 0x081A;
constexpr uint16_t Rectangle = 0x041B;
constexpr uint16_t RoundRect = 0x061C;
constexpr uint16_t SetPixel = 0x041F;
constexpr uint16_t TextOut = 0x0521;
constexpr uint16_t Polygon = 0x0324;
constexpr uint16_t Polyline = 0x0325;
constexpr uint16_t Escape = 0x0626;
constexpr uint16_t RestoreDc = 0x0127;
constexpr uint16_t SelectObject = 0x012D;
constexpr uint16_t SetTextAlign = 0x012E;
constexpr uint16_t Chord = 0x0830;
constexpr uint16_t ExtTextOut = 0x0A32;
constexpr uint16_t PolyPolygon = 0x0538;
constexpr uint16_t DibBitBlt = 0x0940;
constexpr uint16_t DibStretchBlt = 0x0B41;
constexpr uint16_t DibCreatePatternBrush = 0x0142;
constexpr uint16_t StretchDib = 0x0F43;
constexpr uint16_t DeleteObject = 0x01F0;
constexpr uint16_t CreatePalette = 0x00F7;
constexpr uint16_t CreatePatternBrush = 0x01F9;
constexpr uint16_t CreatePenIndirect = 0x02FA;
constexpr uint16_t CreateFontIndirect = 0x02FB;
constexpr uint16_t CreateBrushIndirect = 0x02FC;
constexpr uint16_t SelectClipRegion = 0x012C;
constexpr uint16_t CreateRegion = 0x06FF;
} // namespace meta

namespace gdi {
// Pen styles and their end cap and join bits.
constexpr uint32_t PsSolid = 0;
constexpr uint32_t PsDash = 1;
constexpr uint32_t PsDot = 2;
constexpr uint32_t PsDashDot = 3;
constexpr uint32_t PsDashDotDot = 4;
constexpr uint32_t PsNull = 5;
constexpr uint32_t PsInsideFrame = 6;
constexpr uint32_t PsUserStyle = 7;
constexpr uint32_t PsStyleMask = 0x0000000F;
constexpr uint32_t PsEndcapRound = 0x00000000;
constexpr uint32_t PsEndcapSquare = 0x00000100;
constexpr uint32_t PsEndcapFlat = 0x00000200;
constexpr uint32_t PsEndcapMask = 0x00000F00;
constexpr uint32_t PsJoinRound = 0x00000000;
constexpr uint32_t PsJoinBevel = 0x00001000;
constexpr uint32_t PsJoinMiter = 0x00002000;
constexpr uint32_t PsJoinMask = 0x0000F000;
constexpr uint32_t PsGeometric = 0x00010000;
// Brush styles and hatches.
constexpr uint32_t BsSolid = 0;
constexpr uint32_t BsNull = 1;
constexpr uint32_t BsHatched = 2;
constexpr uint32_t BsPattern = 3;
constexpr uint32_t BsDibPattern = 5;
constexpr uint32_t BsDibPatternPt = 6;
constexpr uint32_t HsHorizontal = 0;
constexpr uint32_t HsVertical = 1;
constexpr uint32_t HsFDiagonal = 2;
constexpr uint32_t HsBDiagonal = 3;
constexpr uint32_t HsCross = 4;
constexpr uint32_t HsDiagCross = 5;
// Stock objects, referenced in EMF by index with the high bit set.
constexpr uint32_t StockFlag = 0x80000000;
constexpr uint32_t WhiteBrush = 0;
constexpr uint32_t LtGrayBrush = 1;
constexpr uint32_t GrayBrush = 2;
constexpr uint32_t DkGrayBrush = 3;
constexpr uint32_t BlackBrush = 4;
constexpr uint32_t NullBrush = 5;
constexpr uint32_t WhitePen = 6;
constexpr uint32_t BlackPen = 7;
constexpr uint32_t NullPen = 8;
constexpr uint32_t SystemFont = 13;
constexpr uint32_t DefaultGuiFont = 17;
constexpr uint32_t StockLast = 19;
// Background modes, fill modes, text alignment, map modes.
constexpr uint32_t Transparent = 1;
constexpr uint32_t Opaque = 2;
constexpr uint32_t Alternate = 1;
constexpr uint32_t Winding = 2;
constexpr uint32_t TaUpdateCp = 1;
constexpr uint32_t TaRight = 2;
constexpr uint32_t TaCenter = 6;
constexpr uint32_t TaHorizontalMask = 6;
constexpr uint32_t TaBottom = 8;
constexpr uint32_t TaBaseline = 24;
constexpr uint32_t TaVerticalMask = 24;
constexpr uint32_t MmText = 1;
constexpr uint32_t MmLoMetric = 2;
constexpr uint32_t MmHiMetric = 3;
constexpr uint32_t MmLoEnglish = 4;
constexpr uint32_t MmHiEnglish = 5;
constexpr uint32_t MmTwips = 6;
constexpr uint32_t MmIsotropic = 7;
constexpr uint32_t MmAnisotropic = 8;
// Clip region modes and world transform modes.
constexpr uint32_t RgnAnd = 1;
constexpr uint32_t RgnOr = 2;
constexpr uint32_t RgnXor = 3;
constexpr uint32_t RgnDiff = 4;
constexpr uint32_t RgnCopy = 5;
constexpr uint32_t MwtIdentity = 1;
constexpr uint32_t MwtLeftMultiply = 2;
constexpr uint32_t MwtRightMultiply = 3;
constexpr uint32_t MwtSet = 4;
// Raster operations, DIB colour usage and bitmap compression.
constexpr uint32_t SrcCopy = 0x00CC0020;
// Raster operations that fill the destination without a source: with the
// selected brush, with black, with white.
constexpr uint32_t PatCopy = 0x00F00021;
constexpr uint32_t Blackness = 0x00000042;
constexpr uint32_t Whiteness = 0x00FF0062;
constexpr uint32_t DibRgbColors = 0;
constexpr uint32_t BiRgb = 0;
constexpr uint32_t BiBitfields = 3;
// ExtTextOut options.
constexpr uint32_t EtoOpaque = 0x0002;
constexpr uint32_t EtoClipped = 0x0004;
// The advances come as x and y pairs.
constexpr uint32_t EtoPdy = 0x2000;
// Font weights and character sets.
constexpr uint32_t FwNormal = 400;
constexpr uint32_t AnsiCharset = 0;
constexpr uint32_t DefaultCharset = 1;
} // namespace gdi

// The signature " EMF" that every enhanced metafile header carries.
constexpr uint32_t EmfSignature = 0x464D4520;
// The key of the 22-byte placeable header in front of a WMF.
constexpr uint32_t PlaceableKey = 0x9AC6CDD7;

} // namespace tessaly::metafile
