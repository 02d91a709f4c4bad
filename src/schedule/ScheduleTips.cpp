#include "ScheduleTips.h"

#include "ScheduleControl.h"
#include "core/forms/Control.h"
#include "core/runtime/Vb.h"

namespace tessaly::schedule {

namespace {
bool isTipText(const QString& name) {
    return name.compare(QLatin1String("TipText"), Qt::CaseInsensitive) == 0;
}
} // namespace

std::shared_ptr<ScheduleTips> ScheduleTips::attach(Control& control,
                                                   const std::shared_ptr<ScheduleControl>& schedule) {
    auto tips = std::make_shared<ScheduleTips>();
    tips->schedule_ = schedule;
    control.inner = tips;
    control.setVisible(false);
    return tips;
}

QVariant ScheduleTips::get(const QString& name, const QVariantList& index) {
    if (isTipText(name))
        return text_;
    return AutoObject::get(name, index);
}

void ScheduleTips::set(const QString& name, const QVariant& value, const QVariantList& index) {
    if (!isTipText(name))
        return AutoObject::set(name, value, index);
    text_ = vb::toText(value);
    if (const AutoPtr s = schedule_.lock())
        static_cast<ScheduleControl&>(*s).setTipText(text_);
}

} // namespace tessaly::schedule
