#pragma once

#include <QJsonValue>
#include <QVariant>

namespace tessaly::script {

// A value of the object model as `print` shows it: numbers, texts, booleans,
// lists and maps as JSON; dates as ISO text ("2026-11-23", with
// "T14:30:00" where a time of day is held); an object by its print value, a control by its
// text, any other object by its type name; Null and Nothing as null.
QJsonValue toJson(const QVariant& value);

// A script literal: a quoted token is text; a bare one is a whole number, a
// decimal, True, False, Null or Nothing, or else text.
QVariant parseLiteral(const QString& text, bool quoted);

} // namespace tessaly::script
