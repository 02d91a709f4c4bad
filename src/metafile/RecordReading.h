#pragma once

#include "ByteReader.h"
#include "GdiSink.h"

#include <QColor>
#include <QImage>
#include <QRect>
#include <cstddef>
#include <cstdint>
#include <optional>

// What the enhanced (EMF) and old-style (WMF) metafile readers read alike:
// colours, logical brushes, saved device contexts and blits.
namespace tessaly::metafile {

// Deepest SaveDC nesting that a reader keeps; deeper saves are ignored.
constexpr size_t MaxSavedStates = 1024;
// Characters of the face name of a LOGFONT (bytes in a WMF, UTF-16 in an EMF).
constexpr qsizetype FaceNameChars = 32;
// Font escapements are tenths of a degree, taken within one turn.
constexpr int TenthsPerTurn = 3600;

// A COLORREF (0x00BBGGRR) as a colour.
QColor fromColourRef(uint32_t ref);

// The brush of a LOGBRUSH: nothing, a hatch, else a solid colour.
GdiBrush logicalBrush(uint32_t style, const QColor& colour, uint32_t hatch);
// The brush of a DIB pattern; a pattern that could not be decoded paints solid.
GdiBrush patternBrush(const QImage& pattern);
// A pen that draws nothing, for fills without an outline.
GdiPen nullPen();

// The index of the saved state that a RestoreDC with `relative` returns to,
// of `depth` saved ones: a negative number counts back from the newest, a
// positive one is the position from the oldest. Nothing when there is none.
std::optional<size_t> restoreTarget(qsizetype relative, size_t depth);

// True when a blit without a source bitmap paints its destination with raster
// operation `rop` (PATCOPY, BLACKNESS or WHITENESS); other such blits draw nothing.
bool fillsWithoutSource(uint32_t rop);
// The brush such a blit fills with; nothing for PATCOPY, which uses the selected brush.
std::optional<GdiBrush> blitFill(uint32_t rop);

// The part of a decoded DIB that a blit draws: the `source` rectangle (counted
// from the last row of a bottom-up bitmap), cut to the image, mirrored where
// the destination has a negative width or height. `header` starts at the
// DIB's header. Nothing when none of the source is in the bitmap.
std::optional<QImage> blitSource(QImage image, const ByteReader& header, const QRect& source,
                                 const QRectF& destination);

} // namespace tessaly::metafile
