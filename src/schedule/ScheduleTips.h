#pragma once

#include "core/runtime/AutoObject.h"

#include <memory>

namespace tessaly {
class Control;
}

namespace tessaly::schedule {

class ScheduleControl;

// The tip control ctTips: its TipText is the tip that a schedule control shows
// beside the pointer while the pointer stands on a bar. The program puts the
// text when the schedule raises BarPointed.
class ScheduleTips : public AutoObject {
public:
    // Makes the tips of `schedule` the inner object of `control` (a control
    // that shows nothing of its own: it is hidden).
    static std::shared_ptr<ScheduleTips> attach(Control& control,
                                                const std::shared_ptr<ScheduleControl>& schedule);

    QString typeName() const override { return QStringLiteral("ctTips"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QStringList memberNames() const override { return {QStringLiteral("TipText")}; }

private:
    std::weak_ptr<AutoObject> schedule_;
    QString text_;
};

} // namespace tessaly::schedule
