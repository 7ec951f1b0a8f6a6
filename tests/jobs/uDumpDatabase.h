#pragma once

#include "uTestDatabase.h"

#include <QStringList>

/// A database with everything that a dump must carry, and what is in one.
namespace DumpDatabase {

/// Fills an empty database: every column type and key kind, foreign keys, views on views,
/// routines, triggers, events, unusual names and values.
void Fill(const TTestDatabase &database);

/// The definitions of all objects and all rows of a database, each line with the object's name.
/// FLOAT columns are read with all of their digits, bytes as hexadecimal digits.
QStringList Contents(const TTestServer &server, const QString &database);

/// The routines with their parameters, triggers and events of a database, as lines of cells that
/// begin with the kind.
QStringList Programs(const TTestServer &server, const QString &database);

} // namespace DumpDatabase
