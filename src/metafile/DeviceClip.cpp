#include "DeviceClip.h"

namespace tessaly::metafile {

void DeviceClip::apply(const QPainterPath& path, Qt::ClipOperation operation, const QTransform& transform) {
    if (operation == Qt::NoClip) {
        set_ = false;
        path_ = QPainterPath();
        return;
    }
    const QPainterPath mapped = transform.map(path);
    path_ = (operation == Qt::IntersectClip && set_) ? path_.intersected(mapped) : mapped;
    set_ = true;
    enabled_ = true;
}

bool DeviceClip::update(const QPaintEngineState& state, const QTransform& transform) {
    const QPaintEngine::DirtyFlags flags = state.state();
    bool changed = false;
    if (flags & QPaintEngine::DirtyClipRegion) {
        QPainterPath path;
        path.addRegion(state.clipRegion());
        apply(path, state.clipOperation(), transform);
        changed = true;
    }
    if (flags & QPaintEngine::DirtyClipPath) {
        apply(state.clipPath(), state.clipOperation(), transform);
        changed = true;
    }
    if (flags & QPaintEngine::DirtyClipEnabled) {
        changed = changed || enabled_ != state.isClipEnabled();
        enabled_ = state.isClipEnabled();
    }
    return changed;
}

} // namespace tessaly::metafile
