#pragma once

#include <QPaintEngine>
#include <QPainterPath>
#include <QTransform>

namespace tessaly::metafile {

// The clip of a paint engine that applies the painter's transform itself,
// kept in device units: the painter's clip regions and paths, combined as
// their operations say, and whether clipping is on.
class DeviceClip {
public:
    // Follows the clip changes of a state, with `transform` the painter's
    // transform in force; true when the clip changed.
    bool update(const QPaintEngineState& state, const QTransform& transform);
    // Clipping stops, the clip is forgotten.
    void reset() { *this = DeviceClip(); }

    // Whether drawing is clipped now, and to what.
    bool active() const { return enabled_ && set_; }
    const QPainterPath& path() const { return path_; }

private:
    void apply(const QPainterPath& path, Qt::ClipOperation operation, const QTransform& transform);

    bool enabled_ = false;
    bool set_ = false;
    QPainterPath path_;
};

} // namespace tessaly::metafile
