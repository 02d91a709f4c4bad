#pragma once

#include <QString>
#include <QVariant>

namespace tessaly::reports {

// The text of a field's value in its output format, as the report prints it:
// - number patterns of "0" (a digit always shown), "#" (a digit shown when
//   significant), "," (thousands grouped) and "." (the decimal point), with
//   literal text around them and an optional "%"; up to three sections
//   "positive;negative;zero": "#,##0.00" prints 1234.5 as "1,234.50";
// - the named formats "General Number", "Currency", "Fixed", "Standard",
//   "Percent", "Long Date", "Medium Date", "Short Date", "Long Time" and
//   "Short Time".
// An empty format prints the value as it is; Null prints as "". A value that
// is no number under a number pattern prints as it is.
QString formatValue(const QVariant& value, const QString& format);

} // namespace tessaly::reports
