#pragma once

#include "core/uDacMySqlConnection.h"
#include "core/uDbmCommandLog.h"
#include "core/uDbmSqlProcessor.h"
#include "support/uSet.h"

enum TDbmCommandExecScriptOption { soSkipErrors };
using TDbmCommandExecScriptOptions = TSet<TDbmCommandExecScriptOption>;

/// qoWarnings, qoCachedUpdates and qoLongStrings are flags of the caller and change nothing here.
enum TDbmCommandExecQueryOption {
    qoExplain,
    qoWarnings,
    qoCachedUpdates,
    qoSkipErrors,
    qoLongStrings,
    qoLog
};
using TDbmCommandExecQueryOptions = TSet<TDbmCommandExecQueryOption>;

struct TDbmCommandExecScriptResult
{
    double ExecTime = 0; // seconds, all statements
};

/// What a query run gave. Moves, and releases what is left when it goes.
struct TDbmCommandExecQueryResult
{
    double ExecTime = 0;                 // seconds, all statements
    std::unique_ptr<TDbmCommandLog> Log; // this run's own, nullptr without qoLog
    TMyQuery *Query = nullptr; // rows of the last statement that gave any; owned unless DefQuery
    std::unique_ptr<TMyQuery> Explain; // that statement's plan, or nullptr
    bool DefQuery = false;             // Query is the caller's own

    TDbmCommandExecQueryResult() = default;
    ~TDbmCommandExecQueryResult() { Release(); }
    TDbmCommandExecQueryResult(TDbmCommandExecQueryResult &&other) noexcept;
    TDbmCommandExecQueryResult &operator=(TDbmCommandExecQueryResult &&other) noexcept;

    /// Frees query (unless it is the caller's), plan and log. May be called twice.
    void Release();
};

/// The one door through which the text of statements reaches the server: splits, runs, measures and
/// logs. One run at a time; a run must not start from inside another's events.
class TDbmCommand
{
public:
    using TNotifyEvent = std::function<void(TDbmCommand *Sender)>;
    using TProgressEvent = std::function<void(TDbmCommand *Sender, double Percent)>;
    using TQueryAction = std::function<void(TDataSet *Query)>;

    explicit TDbmCommand(TDacMySqlConnection &connection); // not owned
    ~TDbmCommand();
    TDbmCommand(const TDbmCommand &) = delete;
    TDbmCommand &operator=(const TDbmCommand &) = delete;

    /// Runs statements whose rows, if any, are dropped. The first failing one raises
    /// EDacMySqlError, unless errors are skipped; what ran before it stays done.
    TDbmCommandExecScriptResult ExecScript(const QString &sql,
                                           TDbmCommandExecScriptOptions options = {},
                                           const QString &delimiter = QStringLiteral(";"));
    /// Runs one statement just as it stands, past the splitter, which writes line ends anew and
    /// drops lines that begin as comments. For stored texts that must come back the same.
    TDbmCommandExecScriptResult ExecStatement(const QString &statement);
    /// Runs statements that may give rows. `defQuery` is a dataset of the caller's that takes the
    /// rows, or nullptr.
    TDbmCommandExecQueryResult ExecQuery(const QString &sql,
                                         TDbmCommandExecQueryOptions options = {},
                                         TMyQuery *defQuery = nullptr,
                                         const QString &delimiter = QStringLiteral(";"));
    TDbmCommandExecScriptResult ExecScriptFromFile(const QString &fileName,
                                                   TDbmCommandExecScriptOptions options = {});
    TDbmCommandExecQueryResult ExecQueryFromFile(const QString &fileName,
                                                 TDbmCommandExecQueryOptions options = {},
                                                 TMyQuery *defQuery = nullptr);
    /// Runs the text, hands the rows over (nullptr when there were none) and frees them, also when
    /// the action raises.
    void ExecuteQuery(const QString &sql, const TQueryAction &action);
    /// The same with one statement just as it stands, past the splitter.
    void ExecuteStatement(const QString &statement, const TQueryAction &action);

    /// Everything that ran since the command was made, newest last; 257 items at most.
    TDbmCommandLog &Log() { return *FLog; }

    /// Fires ahead of the first statement of a run; what it raises ends the run there.
    void SetOnScriptBeforeExecute(TNotifyEvent event) { FOnScriptBeforeExecute = std::move(event); }
    /// Fires also when an exception is leaving the run.
    void SetOnScriptAfterExecute(TNotifyEvent event) { FOnScriptAfterExecute = std::move(event); }
    void SetOnProgress(TProgressEvent event) { FOnProgress = std::move(event); }

private:
    struct TDbmCommandExecResult
    {
        double ExecTime = 0;
        std::unique_ptr<TMyQuery> Query; // our own; a caller's dataset is FDefQuery
        std::unique_ptr<TMyQuery> Explain;
        std::unique_ptr<TDbmCommandLog> Log;
    };
    struct TBlockResult
    {
        double ExecTime = 0;
        std::unique_ptr<TMyQuery> Query;
        std::unique_ptr<TMyQuery> Explain;
    };
    using TRunAction = std::function<void()>;

    void PrepareScript(TDbmCommandExecScriptOptions options);
    void PrepareQuery(TDbmCommandExecQueryOptions options, TMyQuery *defQuery);
    void Run(const QString &delimiter, const TRunAction &action);
    TDbmCommandExecQueryResult TakeQueryResult();
    void ProcessStatement(const QString &commandText);
    void StoreBlock(TBlockResult block);
    void ExecBlock(const QString &commandText, TBlockResult &block);
    void ExecBlockCommand(const QString &commandText, TBlockResult &block);
    void ExecBlockQuery(const QString &commandText, TBlockResult &block);
    std::unique_ptr<TMyQuery> ExecExplain(const QString &commandText);

    TDacMySqlConnection &FConnection;
    std::unique_ptr<TDbmCommandLog> FLog;
    std::unique_ptr<TDbmSqlProcessor> FSQLProcessor;
    TNotifyEvent FOnScriptAfterExecute;
    TNotifyEvent FOnScriptBeforeExecute;
    TProgressEvent FOnProgress;
    bool FSkipErrors = false;
    bool FIsQuery = false;
    bool FIsExplain = false;
    bool FIsLog = false;
    TMyQuery *FDefQuery = nullptr;
    TDbmCommandExecResult FResult;
};
