#pragma once

#include <QString>
#include <QStringList>

// The events a schedule control raises on its form, with their arguments.
namespace tessaly::schedule::event {

// Row, bar, Complete, Cancel: the user has drawn a new bar. Complete is True
// once the button is released; Cancel comes in False and is passed by
// reference: a handler that sets it True takes the new bar away again.
inline const QString BarDrawn = QStringLiteral("BarDrawn");
// Row, bar, text, start time, end time, start date, end date: the user has
// moved or stretched a bar; the values are the bar's new ones.
inline const QString BarChanged = QStringLiteral("BarChanged");
// Row, bar: the user asks for a bar's details (a double click on it).
inline const QString BarActivated = QStringLiteral("BarActivated");
// Row, bar: the pointer has come to stand on a bar.
inline const QString BarPointed = QStringLiteral("BarPointed");
// Row, bar: the user has selected a bar, or cleared the selection (0, 0).
inline const QString BarSelected = QStringLiteral("BarSelected");

// Every event of the control, for the checks of handler wiring.
inline const QStringList All{BarDrawn, BarChanged, BarActivated, BarPointed, BarSelected};

} // namespace tessaly::schedule::event
