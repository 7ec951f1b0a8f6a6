#include "jobs/uDbmTableCloner.h"

#include "jobs/uDbmDumpTableBuilder.h"
#include "model/uDbmManager.h"
#include "support/uException.h"

#include <QScopeGuard>

void TDbmTableCloner::Initialize(TDbmManager &manager, const QString &srcDatabaseName,
                                 const QString &dstTableName, const QString &dstDatabaseName,
                                 const QString &srcTableName)
{
    FManager = &manager;
    FSrcDatabaseName = srcDatabaseName;
    FDstTableName = dstTableName;
    FDstDatabaseName = dstDatabaseName;
    FSrcTableName = srcTableName;
}

void TDbmTableCloner::Execute()
{
    TDbmDumpTableBuilder builder;
    builder.Initialize(*FManager, FSrcDatabaseName, FManager->Formatters(), FSrcTableName);
    builder.FNewDatabaseName = FDstDatabaseName;
    builder.FNewTableName = FDstTableName;
    const auto run = [this](const QString &statement) {
        FManager->Command().ExecScript(statement, {}, ";");
    };
    const QStringList needs = builder.DumpNeeds();
    const QString structure = builder.DumpStructure();
    if (structure.isEmpty())
        throw EException(TFormat::Format("Table \"%s\" not found.", {FSrcTableName}));
    // The workspace goes on in this session, also when the copy fails.
    const auto restore = qScopeGuard([&] {
        try {
            for (const QString &statement : builder.Restore())
                FManager->Command().ExecScript(statement, {soSkipErrors});
        } catch (const std::exception &) {
            // There is no session any more that would have to be brought back.
        }
    });
    for (const QString &need : needs)
        run(need);
    run(structure);
    builder.DumpData(false, false, false, run);
    for (const QString &reference : builder.DumpReferences())
        run(reference);
    FLeftOut = builder.LeftOut();
    std::shared_ptr<TDbmDatabaseItem> database;
    if (FManager->Databases().TryGetByName(FDstDatabaseName, database))
        database->RequestProcess();
}
