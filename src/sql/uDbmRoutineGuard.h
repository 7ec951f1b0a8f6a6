#pragma once

#include "sql/uDbmRoutineCommands.h"

/// Looks after the routines that a script drops in order to create them anew. No server knows a
/// trial run, and not every one can replace a routine in one statement, so a CREATE that is refused
/// would have lost the routine.
class TDbmRoutineGuard
{
public:
    /// Reads the present text of each routine that the script drops and then creates. Raises
    /// nothing; `commands` must outlive the guard.
    TDbmRoutineGuard(TDbmRoutineCommands &commands, const QString &script);

    /// For a script that failed: those routines that are gone are made again. A line for the user
    /// on each, with a line break ahead of it; empty when none was gone.
    QString PutBack();

private:
    struct TRoutine
    {
        QString Database;
        QString Name;
        TDbmRoutineType Type;
        TDbmRoutineText Text; // empty: there was none before the script
        QString Failure;      // why there is no text
    };

    void Watch(const QString &script);
    void Read(TRoutine &routine);
    QString PutBack(const TRoutine &routine);

    TDbmRoutineCommands &FCommands;
    QList<TRoutine> FRoutines;
};
