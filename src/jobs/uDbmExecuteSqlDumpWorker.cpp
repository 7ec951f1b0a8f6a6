#include "jobs/uDbmExecuteSqlDumpWorker.h"

#include "jobs/uDbmDumpNames.h"
#include "model/uDbmManager.h"
#include "support/uStringUtils.h"

namespace {

constexpr qsizetype LoggedChars = 1024; // of a statement; an INSERT may have 128 Ki

/// Ends a script between two statements.
struct TStopped
{};

} // namespace

void TDbmExecuteSqlDumpWorker::Execute()
{
    TWorker::Execute();
    try {
        Load();
    } catch (const TStopped &) {
        SendLog("---\r\nStopped.");
    }
}

void TDbmExecuteSqlDumpWorker::Load()
{
    const auto endWhenAsked = [this] {
        if (StopRequest())
            throw TStopped();
    };
    const std::unique_ptr<TDbmManager> manager = TDbmManager::Create();
    // Of the profile, since connecting takes the character set from there.
    TDbmConnectionProfile profile = FProfile;
    if (!FCharset.isEmpty())
        profile.Charset = FCharset;
    manager->SetParams(profile);
    manager->SetOnCommandBeforeExecute([this](TDbmManager *, const QString &commandText) {
        SendLog(TStringUtils::Compact(commandText.left(LoggedChars)));
    });
    SendLog("Opening connection\r\n---");
    manager->Connect();
    endWhenAsked();
    if (!FDatabaseName.isEmpty())
        manager->Commands().Databases().ExecuteUse(TDbmDumpNames::Escaped(FDatabaseName));
    // A file sets up its session for itself, and an INSERT must not be run twice.
    manager->Provider().HoldSession();
    const std::unique_ptr<TDbmScript> script = manager->CreateScript();
    script->SetOnProgress([=](TDbmScript *, double) { endWhenAsked(); });
    // Told of only behind each line, it would come too late for the first one.
    endWhenAsked();
    script->ExecuteFromFile(FFileName, ";");
}
