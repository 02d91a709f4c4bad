#include "DbErrors.h"

#include "core/runtime/RuntimeError.h"

namespace tessaly::db::dberr {

QString engineSource() {
    return QStringLiteral("Microsoft JET Database Engine");
}

QString recordsetSource() {
    return QStringLiteral("ADODB.Recordset");
}

QString connectionSource() {
    return QStringLiteral("ADODB.Connection");
}

void raiseInvalidUseOfNull() {
    raiseError(InvalidUseOfNull, QStringLiteral("Invalid use of Null"));
}

void raiseNoCurrentRecord() {
    raiseError(NoCurrentRecord,
               QStringLiteral("Either BOF or EOF is True, or the current record has been deleted. Requested "
                              "operation requires a current record."),
               recordsetSource());
}

void raiseNotUpdatable() {
    raiseError(NotUpdatable,
               QStringLiteral("Current Recordset does not support updating. This may be a limitation of the "
                              "provider, or of the selected locktype."),
               recordsetSource());
}

void raiseItemNotFound() {
    raiseError(ItemNotFound,
               QStringLiteral("Item cannot be found in the collection corresponding to the requested name or "
                              "ordinal."),
               recordsetSource());
}

void raiseClosed(const QString& source) {
    raiseError(ObjectClosed, QStringLiteral("Operation is not allowed when the object is closed."), source);
}

void raiseAlreadyOpen(const QString& source) {
    raiseError(ObjectOpen, QStringLiteral("Operation is not allowed when the object is open."), source);
}

void raiseCommandError(const QString& text) {
    raiseError(CommandError, text, engineSource());
}

void raiseProviderFailure(const QString& text) {
    raiseError(ProviderFailure, text, engineSource());
}

} // namespace tessaly::db::dberr
