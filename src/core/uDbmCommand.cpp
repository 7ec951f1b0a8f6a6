#include "core/uDbmCommand.h"

#include "support/uCodeProfiler.h"

#include <QScopeGuard>
#include <optional>

namespace {

constexpr int MaxLogItemLength = 512;
constexpr int MaxLogItemCount = 256;
constexpr int MaxLoggedText = 2048; // what reaches a log at most, for one without a lower limit

QString CutForLog(const QString &commandText)
{
    if (commandText.size() <= MaxLoggedText)
        return commandText;
    return commandText.left(MaxLoggedText) + QStringLiteral("...");
}

} // namespace

TDbmCommandExecQueryResult::TDbmCommandExecQueryResult(TDbmCommandExecQueryResult &&other) noexcept
{
    *this = std::move(other);
}

TDbmCommandExecQueryResult &
TDbmCommandExecQueryResult::operator=(TDbmCommandExecQueryResult &&other) noexcept
{
    if (this == &other)
        return *this;
    Release();
    ExecTime = other.ExecTime;
    Log = std::move(other.Log);
    Query = std::exchange(other.Query, nullptr);
    Explain = std::move(other.Explain);
    DefQuery = other.DefQuery;
    return *this;
}

void TDbmCommandExecQueryResult::Release()
{
    if (!DefQuery)
        delete Query;
    Query = nullptr;
    Explain.reset();
    Log.reset();
}

TDbmCommand::TDbmCommand(TDacMySqlConnection &connection)
    : FConnection(connection),
      FLog(std::make_unique<TDbmCommandLog>(MaxLogItemLength, MaxLogItemCount)),
      FSQLProcessor(std::make_unique<TDbmSqlProcessor>())
{
    FSQLProcessor->SetOnProcess(
        [this](TDbmSqlProcessor *, const QString &commandText) { ProcessStatement(commandText); });
    FSQLProcessor->SetOnProgress([this](TDbmSqlProcessor *, double percent) {
        if (FOnProgress)
            FOnProgress(this, percent);
    });
}

TDbmCommand::~TDbmCommand() = default;

TDbmCommandExecScriptResult TDbmCommand::ExecScript(const QString &sql,
                                                    TDbmCommandExecScriptOptions options,
                                                    const QString &delimiter)
{
    PrepareScript(options);
    Run(delimiter, [&] { FSQLProcessor->ExecuteFromText(sql); });
    return {FResult.ExecTime};
}

TDbmCommandExecScriptResult TDbmCommand::ExecStatement(const QString &statement)
{
    PrepareScript({});
    Run(QStringLiteral(";"), [&] { ProcessStatement(statement); });
    return {FResult.ExecTime};
}

TDbmCommandExecQueryResult TDbmCommand::ExecQuery(const QString &sql,
                                                  TDbmCommandExecQueryOptions options,
                                                  TMyQuery *defQuery, const QString &delimiter)
{
    PrepareQuery(options, defQuery);
    Run(delimiter, [&] { FSQLProcessor->ExecuteFromText(sql); });
    return TakeQueryResult();
}

TDbmCommandExecScriptResult TDbmCommand::ExecScriptFromFile(const QString &fileName,
                                                            TDbmCommandExecScriptOptions options)
{
    PrepareScript(options);
    Run(QStringLiteral(";"), [&] { FSQLProcessor->ExecuteFromFile(fileName); });
    return {FResult.ExecTime};
}

TDbmCommandExecQueryResult TDbmCommand::ExecQueryFromFile(const QString &fileName,
                                                          TDbmCommandExecQueryOptions options,
                                                          TMyQuery *defQuery)
{
    PrepareQuery(options, defQuery);
    Run(QStringLiteral(";"), [&] { FSQLProcessor->ExecuteFromFile(fileName); });
    return TakeQueryResult();
}

void TDbmCommand::ExecuteQuery(const QString &sql, const TQueryAction &action)
{
    const TDbmCommandExecQueryResult result = ExecQuery(sql);
    action(result.Query);
}

void TDbmCommand::ExecuteStatement(const QString &statement, const TQueryAction &action)
{
    PrepareQuery({}, nullptr);
    Run(QStringLiteral(";"), [&] { ProcessStatement(statement); });
    const TDbmCommandExecQueryResult result = TakeQueryResult();
    action(result.Query);
}

void TDbmCommand::PrepareScript(TDbmCommandExecScriptOptions options)
{
    FIsQuery = false;
    FIsExplain = false;
    FIsLog = false;
    FSkipErrors = options.Contains(soSkipErrors);
    FDefQuery = nullptr;
}

void TDbmCommand::PrepareQuery(TDbmCommandExecQueryOptions options, TMyQuery *defQuery)
{
    FIsQuery = true;
    FIsExplain = options.Contains(qoExplain);
    FIsLog = options.Contains(qoLog);
    FSkipErrors = options.Contains(qoSkipErrors);
    FDefQuery = defQuery;
}

void TDbmCommand::Run(const QString &delimiter, const TRunAction &action)
{
    FResult = {};
    if (FIsLog)
        FResult.Log = std::make_unique<TDbmCommandLog>(MaxLogItemLength, 0);

    // A failure to connect comes from here and leaves the run as if it had not begun.
    if (FOnScriptBeforeExecute)
        FOnScriptBeforeExecute(this);

    const auto fireAfter = [this] {
        if (FOnScriptAfterExecute)
            FOnScriptAfterExecute(this);
    };
    try {
        FSQLProcessor->SetDelimiter(delimiter);
        action();
    } catch (...) {
        // Rows that nobody will ask for any more may be many.
        FResult.Query.reset();
        FResult.Explain.reset();
        fireAfter();
        throw;
    }
    fireAfter();
}

TDbmCommandExecQueryResult TDbmCommand::TakeQueryResult()
{
    TDbmCommandExecQueryResult result;
    result.ExecTime = FResult.ExecTime;
    result.Log = std::move(FResult.Log);
    result.Query = FDefQuery ? FDefQuery : FResult.Query.release();
    result.Explain = std::move(FResult.Explain);
    result.DefQuery = FDefQuery != nullptr;
    return result;
}

void TDbmCommand::ProcessStatement(const QString &commandText)
{
    TBlockResult block;
    std::optional<EDacMySqlError> error;
    {
        const auto addTime = qScopeGuard([&] { FResult.ExecTime += block.ExecTime; });
        try {
            ExecBlock(commandText, block);
        } catch (const EDacMySqlError &e) {
            error = e;
        }
    }
    if (FResult.Log)
        FResult.Log->Add(commandText, error ? &*error : nullptr, block.ExecTime);
    if (!error) {
        StoreBlock(std::move(block));
        return;
    }
    FResult.Query.reset();
    FResult.Explain.reset();
    throw *error;
}

void TDbmCommand::StoreBlock(TBlockResult block)
{
    // A statement without rows leaves the rows of an earlier one and their plan alone. Whether the
    // caller's own dataset got rows is not asked: its plan is always that of the last statement.
    if (!FDefQuery && !block.Query)
        return;
    FResult.Query = std::move(block.Query);
    FResult.Explain = std::move(block.Explain);
}

void TDbmCommand::ExecBlock(const QString &commandText, TBlockResult &block)
{
    const QString logged = CutForLog(commandText);
    try {
        if (FIsQuery)
            ExecBlockQuery(commandText, block);
        else
            ExecBlockCommand(commandText, block);
        FLog->Add(logged, nullptr, block.ExecTime);
    } catch (const EDacMySqlError &e) {
        FLog->Add(logged, &e, block.ExecTime);
        // A skipped failure ends here: it stands in this log, while the run's own log and its
        // caller see a success.
        if (!FSkipErrors)
            throw;
    }
}

void TDbmCommand::ExecBlockCommand(const QString &commandText, TBlockResult &block)
{
    TCodeProfiler::ExecuteWithElapsed([&] { FConnection.Execute(commandText); }, block.ExecTime);
}

void TDbmCommand::ExecBlockQuery(const QString &commandText, TBlockResult &block)
{
    std::unique_ptr<TMyQuery> own = FDefQuery ? nullptr : FConnection.CreateDataset();
    TMyQuery &dataset = FDefQuery ? *FDefQuery : *own;
    TCodeProfiler::ExecuteWithElapsed([&] { FConnection.ExecuteDataset(commandText, dataset); },
                                      block.ExecTime);
    if (FIsExplain && commandText.startsWith(QStringLiteral("SELECT"), Qt::CaseInsensitive))
        block.Explain = ExecExplain(commandText);
    if (own && own->Active())
        block.Query = std::move(own);
}

std::unique_ptr<TMyQuery> TDbmCommand::ExecExplain(const QString &commandText)
{
    std::unique_ptr<TMyQuery> plan = FConnection.CreateDataset();
    FConnection.ExecuteDataset(QStringLiteral("EXPLAIN ") + commandText, *plan);
    return plan;
}
