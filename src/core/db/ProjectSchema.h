#pragma once

#include "TableDef.h"

#include <QStringList>

// The tables of the project database: Clients, Sites, SitePlans, ProjectCosts,
// ProjectItems, ProjectTimeLines, Schedule and TemplateFiles.
namespace tessaly::db {

const QList<TableDef>& projectTables();
// The table of that name, matched without regard to case, or nullptr.
const TableDef* findTable(const QString& name);
// True when `name` names a table or a field of the project tables.
bool isSchemaName(const QString& name);
// The spelling the tables use for a table or field name given in any case;
// the name itself when it is not one of theirs.
QString canonicalName(const QString& name);

// The building-work items a new database offers in ProjectItems.
QStringList defaultProjectItems();

} // namespace tessaly::db
