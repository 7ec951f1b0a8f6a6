#pragma once

#include <QByteArray>
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

/// One INSERT of many rows, ready to be written or run.
struct TDbmRowsStatement
{
    QByteArray Text;   // UTF-8, without a delimiter
    qint64 Offset = 0; // rows of the table ahead of it
    qint64 Count = 0;  // rows in it
    int Needs = 0;     // TDbmRowNeed flags
};

/// Hands statements from the thread that reads rows to one that writes or runs them, so that both
/// go on at once. Few wait; then the reader waits too. The second thread starts with the second
/// statement, so that a small table does not pay for one.
class TDbmStatementPipe
{
public:
    /// Called for each statement in order, one at a time. Returning false or raising ends the walk.
    using TAction = std::function<bool(const TDbmRowsStatement &statement)>;

    /// `threaded` false: each statement is worked on in Put, on the caller's thread.
    TDbmStatementPipe(TAction action, bool threaded)
        : FAction(std::move(action)), FIsThreaded(threaded)
    {}
    ~TDbmStatementPipe(); // what still waits is dropped
    TDbmStatementPipe(const TDbmStatementPipe &) = delete;
    TDbmStatementPipe &operator=(const TDbmStatementPipe &) = delete;

    /// Gives false when the walk was ended.
    bool Put(TDbmRowsStatement statement);
    /// Waits until every statement was taken. Raises what the action raised. Gives false when the
    /// walk was ended.
    bool Finish();

private:
    void Work();
    bool Take(const TDbmRowsStatement &statement);
    void Join(bool drop);

    const TAction FAction;
    const bool FIsThreaded;
    std::thread FThread;
    std::mutex FMutex; // of everything below
    std::condition_variable FChanged;
    std::deque<TDbmRowsStatement> FWaiting;
    bool FWorking = false;
    bool FClosed = false;
    bool FEnded = false; // by the action
    std::exception_ptr FError;
};
