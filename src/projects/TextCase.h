#pragma once

#include <QString>

// The text conversions of the client and site boxes.
namespace tessaly::projects {

// First letter of each word upper case, all others lower case. Words are
// separated by blanks, tabs, line ends and NULs only, so "smith-jones" becomes
// "Smith-jones" and "McDONALD" becomes "Mcdonald".
QString properCase(const QString& text);

// The text without leading and trailing spaces (other blanks stay).
QString trimSpaces(const QString& text);

// How a box rewrites its text when it loses the focus.
enum class CaseRule { Unchanged, Proper, Upper, Lower };
QString applyCase(CaseRule rule, const QString& text);

} // namespace tessaly::projects
