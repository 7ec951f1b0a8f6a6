#pragma once

#include <QStringList>

class TDbmManager;

/// What a session that reads or writes a whole database needs.
class TDbmDumpSession
{
public:
    /// Lets the connection wait for as long as the other side takes.
    static void Prepare(TDbmManager &manager);
    /// Everything read from here on is of this moment, where the engine of a table can tell.
    static void BeginSnapshot(TDbmManager &manager);
};

/// Closes a connection when the job is over, however it ended: its window may stay open for long,
/// and a snapshot keeps others from changing the tables.
class TDbmDumpCloser
{
public:
    explicit TDbmDumpCloser(TDbmManager &manager) : FManager(manager) {} // not owned
    ~TDbmDumpCloser();
    TDbmDumpCloser(const TDbmDumpCloser &) = delete;
    TDbmDumpCloser &operator=(const TDbmDumpCloser &) = delete;

private:
    TDbmManager &FManager;
};

/// The statements that make a session take values which it would refuse or change by default: only
/// those that the rows at hand ask for, each once.
class TDbmDumpModes
{
public:
    /// `needs` are TDbmRowNeed flags.
    QStringList Take(int needs);
    /// Brings the session's own mode back; nothing when it was never changed.
    QStringList Restore();

private:
    int FTaken = 0;
};
