#pragma once

#include "Control.h"

#include <QStringList>

// The events that each kind of control raises, and those of a form, by the
// names handlers are registered under ("Click", "ShapeAdded", "Load", ...).
// Form::on and Form::onForm refuse a handler for any other event.
namespace tessaly::control_events {

// Every event that a control of `kind` raises.
const QStringList& of(ControlKind kind);
// Whether a control of `kind` raises `event`; names compare without regard to case.
bool raises(ControlKind kind, const QString& event);

// Every event that a form raises.
const QStringList& ofForm();
// Whether a form raises `event`; names compare without regard to case.
bool formRaises(const QString& event);

} // namespace tessaly::control_events
