#include "DataControl.h"

namespace tessaly::db {

namespace {

constexpr int DefaultConnectionTimeout = 15; // seconds
constexpr int DefaultCommandTimeout = 30;    // seconds
constexpr int DefaultCacheSize = 50;         // rows

} // namespace

DataControl::DataControl()
    : cursorLocation_(adUseClient), cursorType_(adOpenDynamic), lockType_(adLockOptimistic),
      commandType_(adCmdText), mode_(adModeShareDenyNone), connectionTimeout_(DefaultConnectionTimeout),
      commandTimeout_(DefaultCommandTimeout), cacheSize_(DefaultCacheSize) {
    recordset_.addListener([this](const RecordsetEvent& e) {
        if (e.kind == RecordsetEvent::Kind::MoveComplete && MoveComplete)
            MoveComplete(e.reason, e.error, e.status, recordset_);
    });
}

DataControl::~DataControl() = default;

void DataControl::setConnectionString(const QString& connectionString) {
    connectionString_ = connectionString;
}

void DataControl::Refresh() {
    if (recordset_.State() == adStateOpen)
        recordset_.Close();
    if (connection_.State() == adStateOpen && connection_.ConnectionString() != connectionString_)
        connection_.Close();
    if (connection_.State() != adStateOpen) {
        connection_.setConnectionTimeout(connectionTimeout_);
        connection_.setCommandTimeout(commandTimeout_);
        connection_.Open(connectionString_);
    }
    recordset_.Open(recordSource_, connection_, cursorType_, lockType_, commandType_);
}

} // namespace tessaly::db
