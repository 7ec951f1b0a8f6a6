#pragma once

#include <QString>

/// Where the rows of a statement come from, as far as its text tells.
enum TRowsOrigin {
    roTables,
    roSubquery, // a table that the statement itself makes is among those that it reads
    roOther,    // a routine, or another statement that hides where its rows come from
};

TRowsOrigin RowsOriginOf(const QString &sql);
