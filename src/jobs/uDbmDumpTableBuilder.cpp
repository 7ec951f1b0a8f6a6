#include "jobs/uDbmDumpTableBuilder.h"

#include "jobs/uDbmDumpNames.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "sql/uDbmPathUtils.h"
#include "sql/uDbmSqlStringFormatter.h"

namespace {

constexpr qint64 BytesPerFetch = 524288; // half of what a dump reads: the window waits meanwhile

QString Escaped(const QString &name)
{
    return TDbmDumpNames::Escaped(name);
}

} // namespace

TDbmDumpTableBuilder::TDbmDumpTableBuilder() = default;

TDbmDumpTableBuilder::~TDbmDumpTableBuilder() = default;

void TDbmDumpTableBuilder::Initialize(TDbmManager &manager, const QString &databaseName,
                                      const TDbmFormatters &formatters, const QString &tableName)
{
    FManager = &manager;
    FFormatters = &formatters;
    FDatabaseName = databaseName;
    FTableName = tableName;
    FDumpUtils.FFormatters = FFormatters;
    FDumpUtils.FFeatures = &FManager->Features();
    FDumpUtils.FSourceDatabaseName = FDatabaseName;
}

QString TDbmDumpTableBuilder::NewDatabase() const
{
    return FNewDatabaseName.isEmpty() ? FDatabaseName : FNewDatabaseName;
}

QString TDbmDumpTableBuilder::NewTable() const
{
    return FNewTableName.isEmpty() ? FTableName : FNewTableName;
}

// The workspace's own session may be in a set that does not have every character, in a time zone
// whose texts are not unique, and its lists may be old.
TDbmManager &TDbmDumpTableBuilder::Reader()
{
    if (!FReader) {
        FReader = TDbmManager::Create();
        FReader->SetParams(FManager->ConnectionProfile());
        FReader->Connect();
        TDbmDumpSession::PrepareReader(*FReader);
        FDumpUtils.FManager = FReader.get();
    }
    return *FReader;
}

QStringList TDbmDumpTableBuilder::DumpNeeds()
{
    std::shared_ptr<TDbmTableItem> table;
    if (!Reader().TryGetTable(FDatabaseName, FTableName, table))
        return {};
    return FModes.Take(FDumpUtils.TableNeeds(FTableName) |
                       (TDbmDumpSession::ReadsQuotesOtherwise(*FManager) ? rnPlainQuotes : 0));
}

QString TDbmDumpTableBuilder::DumpStructure()
{
    Reader();
    FDumpUtils.FTargetDatabaseName = FExcludeDatabaseName ? QString() : NewDatabase();
    // What the table does not say of its collation comes from the database around the copy.
    std::shared_ptr<TDbmDatabaseItem> database;
    if (FManager->Databases().TryGetByName(NewDatabase(), database))
        FDumpUtils.FDefaultCollation = database->Entity().Collation;
    return FDumpUtils.DumpCreateTable(FTableName, NewTable());
}

QStringList TDbmDumpTableBuilder::DumpReferences()
{
    Reader();
    QStringList statements;
    for (TDbmWholeReference key : FDumpUtils.Keys(FTableName).References()) {
        TDbmReferenceEntity &reference = key.Reference;
        if (reference.RefDatabaseName.isEmpty())
            reference.RefDatabaseName = FDatabaseName;
        // A copy that refers to itself does so as the table did.
        if (reference.RefDatabaseName == FDatabaseName && reference.RefTableName == FTableName) {
            reference.RefDatabaseName = NewDatabase();
            reference.RefTableName = NewTable();
        }
        reference.ReferenceName =
            IsTaken(reference.ReferenceName) ? QString() : Escaped(reference.ReferenceName);
        reference.RefDatabaseName = Escaped(reference.RefDatabaseName);
        reference.RefTableName = Escaped(reference.RefTableName);
        for (TDbmReferenceColumnEntity &column : key.Columns) {
            column.SrcColumnName = Escaped(column.SrcColumnName);
            column.RefColumnName = Escaped(column.RefColumnName);
        }
        statements += FFormatters->ForeignKeys().FormatAlterTableAddForeignKey(
            FExcludeDatabaseName ? QString() : Escaped(NewDatabase()), Escaped(NewTable()),
            Escaped(NewDatabase()), key.Columns, reference);
    }
    return statements;
}

bool TDbmDumpTableBuilder::IsTaken(const QString &reference) const
{
    bool isTaken = false;
    const QString sql = TFormat::Format(
        "SELECT 1 FROM information_schema.table_constraints WHERE constraint_schema = '%s' AND "
        "constraint_name = '%s' AND constraint_type = 'FOREIGN KEY'",
        {TDbmSqlStringFormatter::Format(NewDatabase()), TDbmSqlStringFormatter::Format(reference)});
    FManager->Command().ExecuteQuery(
        sql, [&](TDataSet *rows) { isTaken = rows && rows->RecordCount() > 0; });
    return isTaken;
}

void TDbmDumpTableBuilder::DumpData(bool ignore, bool delayed, bool replace,
                                    const TConsumer &consumer)
{
    TDbmTableRows rows(Reader(), FDatabaseName, FTableName);
    rows.FStatementCharset = FManager->Provider().Connection().LibraryConnection().CurrentCharset();
    rows.FBytesPerFetch = BytesPerFetch;
    rows.FTargetTable = TDbmPathUtils::FormatDbObject(
        FExcludeDatabaseName ? QString() : Escaped(NewDatabase()), Escaped(NewTable()));
    rows.FIgnore = ignore;
    rows.FDelayed = delayed;
    rows.FReplace = replace;
    // Copies are made by the workspace itself, whose windows hear of each statement.
    rows.FConsumesHere = true;
    rows.Run([&](const TDbmRowsStatement &statement) {
        for (const QString &mode : FModes.Take(statement.Needs))
            consumer(mode);
        consumer(QString::fromUtf8(statement.Text));
    });
    // A snapshot that lasts would keep the server from changing the tables.
    FReader->Provider().CloseConnection();
}
