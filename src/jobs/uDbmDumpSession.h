#pragma once

#include <QStringList>

class TDbmManager;

/// What a session that reads or writes a whole database needs. Each is the only session of its job:
/// its loss ends the job, since another one would have neither the snapshot nor the settings.
class TDbmDumpSession
{
public:
    /// For the session that is read from: texts whole, times as the moments they stand for,
    /// definitions in the server's plain spelling; everything read from here on is of this moment,
    /// where the engine of a table can tell.
    static void PrepareReader(TDbmManager &manager);
    /// For the session that runs the statements that were made.
    static void PrepareWriter(TDbmManager &manager);
    static void BeginSnapshot(TDbmManager &manager);
    /// Whether backslashes or double quotes mean something else in the session than they do in the
    /// statements that are made.
    static bool ReadsQuotesOtherwise(TDbmManager &manager);
    /// A variable of the session, such as sql_mode.
    static QString Variable(TDbmManager &manager, const QString &name);
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
    /// Brings the session's own values back; nothing when they were never changed.
    QStringList Restore();

    /// Around the statement that makes a stored program, which keeps the mode that it was made in.
    static QStringList EnterMode(const QString &mode);
    static QStringList LeaveMode();

private:
    int FTaken = 0;
};
