#include "ReportControl.h"

#include "core/runtime/Vb.h"

namespace tessaly::reports {

ReportControl::ReportControl(QString name) : name_(std::move(name)) {
    property(QStringLiteral("Name"), [this] { return name_; });
    property(
        QStringLiteral("Visible"), [this] { return Visible; },
        [this](const QVariant& v) { Visible = vb::toBool(v); });
}

void ReportControl::boxProperties() {
    property(
        QStringLiteral("Left"), [this] { return Left; },
        [this](const QVariant& v) { Left = vb::toDouble(v); });
    property(
        QStringLiteral("Top"), [this] { return Top; }, [this](const QVariant& v) { Top = vb::toDouble(v); });
    property(
        QStringLiteral("Width"), [this] { return Width; },
        [this](const QVariant& v) { Width = vb::toDouble(v); });
    property(
        QStringLiteral("Height"), [this] { return Height; },
        [this](const QVariant& v) { Height = vb::toDouble(v); });
}

} // namespace tessaly::reports
