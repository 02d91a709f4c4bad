#pragma once

#include "RecordTypes.h"

#include <QPainterPath>
#include <QPointF>
#include <QPolygonF>
#include <QSizeF>
#include <QTransform>

namespace tessaly::metafile {

// The mapping of a device context from logical to device units: map mode,
// window and viewport origins and extents.
struct PageMapping {
    uint32_t mapMode = gdi::MmText;
    QPointF windowOrg;
    QSizeF windowExt{1, 1};
    QPointF viewportOrg;
    QSizeF viewportExt{1, 1};

    // The transform from logical to device units; `devicePerMm` is the size
    // of a millimetre in device units, for the fixed map modes.
    QTransform transform(QSizeF devicePerMm) const;
};

// Builds the path of an arc, chord or pie from a box and two radial points,
// drawn counter-clockwise from start to end as GDI draws them.
enum class ArcKind { Open, Chord, Pie };
QPainterPath arcPath(const QRectF& box, const QPointF& start, const QPointF& end, ArcKind kind);

// Maps a rectangle given by two corners as a closed polygon.
QPolygonF mappedRect(const QTransform& transform, const QRectF& rect);

} // namespace tessaly::metafile
