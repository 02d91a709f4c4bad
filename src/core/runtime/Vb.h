#pragma once

#include <QString>
#include <QVariant>
#include <cstdint>

// The value conversions of Tessaly's logic, with the platform's rules:
// banker's rounding, 16- and 32-bit integers that overflow with error 6,
// text that is not a number failing with error 13.
namespace tessaly::vb {

constexpr int16_t TrueValue = -1; // a Boolean true as stored in 16 bits
constexpr int16_t FalseValue = 0; // a Boolean false

// Rounds to the nearest whole number, halves to the even neighbour.
double roundHalfEven(double value);

// Whether the value is a number, or a text that reads as one (blanks around allowed).
bool isNumeric(const QVariant& value);

// Converts to a double; error 13 for a text that is not a number.
double toDouble(const QVariant& value);
// Converts with banker's rounding; error 6 outside the type's range, 13 for non-numbers.
int16_t toInt16(const QVariant& value);
int32_t toInt32(const QVariant& value);
// Checks that a whole number fits the type; error 6 otherwise.
int16_t checkInt16(long long value);
int32_t checkInt32(long long value);

// The text of a value as the platform writes it: True/False, shortest numbers.
QString toText(const QVariant& value);
// A Boolean from a value: numbers are true when not zero, "True"/"False" texts.
bool toBool(const QVariant& value);

// The leading number of a text, 0 where there is none (Val).
double val(const QString& text);

} // namespace tessaly::vb
