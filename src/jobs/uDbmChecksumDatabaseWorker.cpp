#include "jobs/uDbmChecksumDatabaseWorker.h"

#include "jobs/uDbmChecksumTableDataUtils.h"
#include "model/uDbmTableList.h"
#include "support/uCRC32Utils.h"
#include "support/uException.h"

#include <QtEndian>

TDbmChecksumDatabaseWorker::TDbmChecksumDatabaseWorker() : FManager(TDbmManager::Create()) {}

void TDbmChecksumDatabaseWorker::Execute()
{
    TWorker::Execute();
    SendLog("Opening connection");
    TDbmConnectionProfile profile = FProfile;
    profile.Database = FDatabaseName;
    FManager->SetParams(profile);
    FManager->Connect();
    QList<quint32> numbers;
    if (!SumTables(numbers))
        return;
    // The sequence is hashed, so the order of the tables belongs to the result.
    QList<quint32> bytes(numbers.size());
    qToLittleEndian<quint32>(numbers.constData(), numbers.size(), bytes.data());
    const quint32 sum = numbers.isEmpty()
                            ? 0
                            : TCRC32Utils::CalculateMemory(
                                  bytes.constData(), numbers.size() * qsizetype(sizeof(quint32)));
    SendLog("Database checksum = %u", {sum});
}

bool TDbmChecksumDatabaseWorker::SumTables(QList<quint32> &numbers)
{
    std::shared_ptr<TDbmDatabaseItem> database;
    if (!FManager->Databases().TryGetByName(FDatabaseName, database))
        throw EException(TFormat::Format("Database \"%s\" not found.", {FDatabaseName}));
    SendLog("---");
    TDbmChecksumTableDataUtils utils(*FManager);
    for (const auto &table : database->Tables().ToArray()) {
        if (StopRequest())
            return false;
        numbers << utils.Calculate(FDatabaseName, table->Entity().TableName);
        SendLog("Table \"%s\" = %u", {table->Entity().TableName, numbers.last()});
    }
    SendLog("---");
    return !StopRequest();
}
