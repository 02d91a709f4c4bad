#pragma once

#include "TableDef.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

// The values of the project tables as the program sees them and as the
// engines hold them.
//
// The program sees a Null as a null QVariant; a date as a date serial (a
// double counting days from 30 December 1899, the fraction being the time of
// day); currency as a double; a flag as -1 or 0; whole numbers as int.
//
// Between the program and an engine every value passes through one engine-
// neutral form: currency as a qlonglong of ten-thousandths, dates as a
// QDateTime marked as UTC holding the wall-clock date and time to the second,
// flags as bool, whole numbers as int, texts as QString.
namespace tessaly::db {

// Ten-thousandths in one unit of currency.
constexpr qint64 CurrencyScale = 10000;

namespace values {

// The neutral form of a value that the program assigns to a field of `type`.
// Raises 13 (type mismatch) for a value that is not of the type, 6 (overflow)
// for a number out of the type's range. A Null stays Null.
QVariant fromProgram(FieldType type, const QVariant& value);
// The value the program reads for a neutral value of `type`.
QVariant toProgram(FieldType type, const QVariant& neutral);

// Currency from a number or a text ("12.5", " 1,250.00 ", "£3.20"), rounded
// half to even at four decimals. Raises 13 or 6.
qint64 currencyFromVariant(const QVariant& value);
// "12.5000": the exact decimal text of ten-thousandths.
QString currencyText(qint64 tenThousandths);
// Ten-thousandths from an exact decimal text such as an engine gives; false when it is none.
bool parseCurrencyText(const QString& text, qint64* tenThousandths);

// Date serials, to the second.
QDateTime dateFromSerial(double serial);
double serialFromDate(const QDateTime& dateTime);
// A date from a serial, a QDate/QDateTime or a date text; raises 13.
QDateTime dateFromVariant(const QVariant& value);
// "2024-03-05 14:30:00", as SQLite holds dates.
QString isoText(const QDateTime& dateTime);
// The date of an ISO text ("2024-03-05", "2024-03-05 14:30:00", "2024-03-05T14:30:00.000"); invalid when
// none.
QDateTime fromIsoText(const QString& text);

} // namespace values

// Reading a field as text where the program does so: a Null raises run-time
// error 94 "Invalid use of Null", as the platform did.
QString textOf(const QVariant& value);
// The same for a whole number.
int longOf(const QVariant& value);

} // namespace tessaly::db
