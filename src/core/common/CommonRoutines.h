#pragma once

#include <QString>
#include <QVariant>
#include <cstdint>

namespace tessaly {

class ApplicationBase;
class Form;

// The small routines of the main module that the windows share.
namespace common {

// Appends "<now>-<a>-<b>-<c>" as one line to "\ErrorLog.Log" in the application folder.
void ReportError(ApplicationBase& app, const QString& a, const QString& b, const QString& c);
// A twelve-hour clock text for minutes after midnight, as the schedule shows it.
QString MinutesToTimeText(int16_t& minutes);
// True for a number greater than zero; otherwise a critical box and false.
bool ValidatePositive(ApplicationBase& app, const QVariant& value);
// The common file dialogs: the chosen path with trailing blanks removed, or "" on cancel.
// `filter` alternates captions and patterns separated by "|".
QString ShowSaveDialog(ApplicationBase& app, const QString& filter);
QString ShowOpenDialog(ApplicationBase& app, const QString& filter);
// The colour dialog started from `colour`; the given colour on cancel.
uint32_t ShowColourDialog(ApplicationBase& app, uint32_t& colour);
// Selects the whole text of the focused text box of `form`.
void SelectAllText(Form& form);
// True when the path (a wildcard pattern allowed) names an existing file; empty is false.
bool FileExists(const QString& path);

// The default extension that the common file dialogs are given, whatever the filter says.
inline const QString CommonDialogDefaultExt = QStringLiteral("*.pdr");

} // namespace common
} // namespace tessaly
