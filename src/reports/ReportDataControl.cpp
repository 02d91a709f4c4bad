#include "ReportDataControl.h"

#include "core/db/DataControl.h"
#include "core/runtime/Vb.h"

namespace tessaly::reports {

ReportDataControl::ReportDataControl(QString name)
    : name_(std::move(name)), control_(std::make_unique<db::DataControl>()) {
    property(QStringLiteral("Name"), [this] { return name_; });
    property(
        QStringLiteral("ConnectionString"), [this] { return ConnectionString; },
        [this](const QVariant& v) { ConnectionString = vb::toText(v); });
    property(
        QStringLiteral("Source"), [this] { return Source; },
        [this](const QVariant& v) { Source = vb::toText(v); });
    property(QStringLiteral("RecordCount"),
             [this] { return ran_ ? control_->recordset().RecordCount() : 0; });
    method(QStringLiteral("Run"), [this](QVariantList&) {
        Run();
        return QVariant();
    });
}

ReportDataControl::~ReportDataControl() = default;

void ReportDataControl::Run() {
    control_->setConnectionString(ConnectionString);
    control_->setRecordSource(Source);
    control_->Refresh();
    ran_ = true;
}

db::Recordset& ReportDataControl::recordset() {
    return control_->recordset();
}

} // namespace tessaly::reports
