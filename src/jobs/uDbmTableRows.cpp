#include "jobs/uDbmTableRows.h"

#include "client/uFieldValue.h"
#include "jobs/uDbmDumpNames.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "sql/uDbmFieldUtils.h"
#include "sql/uDbmPathUtils.h"
#include "sql/uDbmSelectFormatter.h"
#include "sql/uDbmSqlValueUtils.h"
#include "support/uException.h"
#include "support/uFormat.h"

namespace {

constexpr qint64 StatementSize = 0x20000; // characters of rows; the row that passes it goes in
constexpr qint64 LargestFetch = 16 * 1024 * 1024; // bytes, whatever the average says

QString QuotedList(const QStringList &names)
{
    return u'`' + TDbmDumpNames::Escaped(names).join("`, `") + u'`';
}

QString Quoted(const QString &name)
{
    return u'`' + TDbmDumpNames::Escaped(name) + u'`';
}

bool IsNumber(const TFieldInfo &field)
{
    return field.IsNumeric() && field.DataType != ftFloat;
}

QString KeyLiteral(const TFieldInfo &field, QByteArrayView bytes)
{
    // In quotes a number would be compared as a double, which does not tell long ones apart.
    return IsNumber(field)
               ? QString::fromLatin1(bytes)
               : TDbmSqlValueUtils::FormatVariantValue(TFieldValue::Value(field, bytes), true);
}

} // namespace

TDbmTableRows::TDbmTableRows(TDbmManager &manager, const QString &databaseName,
                             const QString &tableName)
    : FManager(manager), FDatabaseName(databaseName), FTableName(tableName)
{
    if (!FManager.TryGetTable(databaseName, tableName, FTable))
        throw EException(TFormat::Format("Table \"%s\" not found.", {tableName}));
}

void TDbmTableRows::Run(const TConsumer &consumer)
{
    ReadFields();
    ReadKey();
    const qint64 average = FTable->Entity().Info.AvgRowLength;
    FLimit = average > 0 && FIsPaged ? qMax<qint64>(1, FBytesPerFetch / average) : -1;
    FHead = Head();
    FRows.reserve(StatementSize * 2);
    TDbmStatementPipe pipe(
        [&](const TDbmRowsStatement &statement) {
            consumer(statement);
            return !FStopRequested || !FStopRequested();
        },
        !FConsumesHere);
    do {
        Fetch(pipe);
        AdaptLimit();
    } while (!IsAtEnd());
    // Also when the last fetch came back empty: what is held belongs to the table.
    if (FCount > 0 && !FIsStopped)
        HandOver(pipe);
    pipe.Finish();
}

void TDbmTableRows::ReadFields()
{
    QStringList names;
    FTable->Fields().ForEach([&](TDbmFieldItem &item) {
        const TDbmFieldEntity &field = item.Entity();
        names += field.FieldName;
        FHasInvisible = FHasInvisible || field.ServerText.Trailing.contains("INVISIBLE");
        if (field.FieldType.DataType == fdtFloat)
            FFloatNames += field.FieldName;
    });
    if (names.isEmpty())
        throw EException(
            TFormat::Format("The columns of table \"%s\" cannot be read.", {FTableName}));
    if (FHasInvisible || !FFloatNames.isEmpty())
        FNames = names;
}

void TDbmTableRows::ReadKey()
{
    // The model does not find the text of a table when a name needs an escape.
    QString ddl;
    if ((FDatabaseName + FTableName).contains(u'`'))
        FManager.Commands().Tables().ExecuteSelectDDL(TDbmDumpNames::Escaped(FDatabaseName),
                                                      TDbmDumpNames::Escaped(FTableName), ddl);
    const bool found = ddl.isEmpty()
                           ? FTable->TryGetRowKey(FKeyNames)
                           : TDbmTableKeys::Parse(FDatabaseName, ddl).TryGetRowKey(FKeyNames);
    if (!found)
        FKeyNames.clear();
    FIsPaged = !FKeyNames.isEmpty();
    for (const QString &name : FKeyNames) {
        std::shared_ptr<TDbmFieldItem> field;
        FIsPaged = FIsPaged && FTable->Fields().TryGetByName(name, field) &&
                   HasExactOrder(field->Entity());
    }
}

// Whether the text of a value, as a literal, compares with the column as its rows are ordered.
// Dates are not among them (a zero date is no literal for every server), nor ENUM and SET, which
// are ordered by number and compared by text.
bool TDbmTableRows::HasExactOrder(const TDbmFieldEntity &field) const
{
    switch (field.FieldType.DataType) {
    case fdtTinyint:
    case fdtSmallint:
    case fdtMediumint:
    case fdtInt:
    case fdtBigint:
    case fdtBool:
    case fdtDecimal:
    case fdtBinary:
    case fdtVarBinary:
        return true;
    case fdtChar:
    case fdtVarChar:
        // In any other set characters that it does not have would come as question marks.
        return FManager.Provider().Connection().LibraryConnection().CurrentCharset() == "utf8mb4";
    default:
        return false;
    }
}

void TDbmTableRows::Fetch(TDbmStatementPipe &pipe)
{
    FFetched = FFetchedBytes = 0;
    FIsCut = false;
    const QStringList keyBefore = FLastKey;
    FManager.Provider().OpenConnection();
    FManager.Provider().Connection().Stream(
        FetchText(), [&](const std::vector<TFieldInfo> &fields) { Open(fields); },
        [&](const TMyQuery::TRowView &row) { return Take(row, pipe); });
    if (FIsPaged && !IsAtEnd() && FLastKey == keyBefore)
        throw EException(TFormat::Format(
            "The rows of table \"%s\" do not come in the order of its key.", {FTableName}));
}

bool TDbmTableRows::IsAtEnd() const
{
    // A fetch without limit has brought everything.
    return FIsStopped || (!FIsCut && (FLimit < 0 || FFetched < FLimit));
}

QString TDbmTableRows::FetchText() const
{
    TDbmSelectFormatter select;
    select.FDatabaseName = TDbmDumpNames::Escaped(FDatabaseName);
    select.FTableName = TDbmDumpNames::Escaped(FTableName);
    select.FFieldNames = TDbmDumpNames::Escaped(FNames);
    select.FFloatFields = TDbmDumpNames::Escaped(FFloatNames);
    select.FPrimaryFieldNames = TDbmDumpNames::Escaped(FKeyNames);
    select.FOrderFields = select.FPrimaryFieldNames;
    select.FOrderAscending = true;
    select.FWhereCommandText = KeyCondition();
    select.FLimitRowCount = FLimit;
    QString sql;
    select.Format(sql);
    return sql;
}

QString TDbmTableRows::KeyCondition() const
{
    if (FLastKey.isEmpty())
        return {};
    // Servers find a place in an index by this form, and not by a comparison of rows.
    QString condition;
    for (qsizetype i = FLastKey.size() - 1; i >= 0; --i) {
        const QString name = Quoted(FKeyNames[i]);
        const QString behind = name + " > " + FLastKey[i];
        condition = condition.isEmpty() ? behind
                                        : name + " >= " + FLastKey[i] + " AND (" + behind +
                                              " OR (" + condition + "))";
    }
    return condition;
}

void TDbmTableRows::Open(const std::vector<TFieldInfo> &fields)
{
    if (FFormatter)
        return;
    FInfos = fields;
    std::vector<TDbmRowFormatter::TColumn> columns;
    for (const TFieldInfo &info : fields) {
        std::shared_ptr<TDbmFieldItem> item;
        TDbmRowFormatter::TColumn column;
        column.IsKnown = FTable->Fields().TryGetByName(info.Name, item);
        if (column.IsKnown) {
            const TDbmFieldEntity &field = item->Entity();
            column.IsGenerated = !field.ServerText.Generated.isEmpty();
            column.IsMoment = field.FieldType.DataType == fdtTimeStamp;
            column.IsNullable = field.Nullable;
            column.HasEmptyMember = field.FieldType.DataType != fdtEnum ||
                                    TDbmFieldUtils::Members(field.ServerText.Type).contains("");
        }
        columns.push_back(column);
    }
    for (const QString &name : FKeyNames)
        for (size_t i = 0; i < fields.size(); ++i)
            if (fields[i].Name.compare(name, Qt::CaseInsensitive) == 0)
                FKeyFields.push_back(static_cast<int>(i));
    FFormatter.emplace(fields, std::move(columns));
    if (!FStatementCharset.isEmpty() && FStatementCharset != u"utf8mb4")
        FFormatter->SetStatementCodec(TCharsetCodec::Create(FStatementCharset.toLatin1()));
}

bool TDbmTableRows::Take(const TMyQuery::TRowView &row, TDbmStatementPipe &pipe)
{
    if (FCount == 0)
        FRows.append(FHead);
    FRows.append(FCount == 0 ? "\r\n    " : ",\r\n    ");
    FBufferSize += FFormatter->Append(row, FRows);
    ++FCount;
    ++FFetched;
    for (int i = 0; i < row.Count; ++i)
        FFetchedBytes += static_cast<qint64>(row.Lengths[i]);
    FIsCut = FIsPaged && FLimit > 0 && FFetchedBytes > LargestFetch;
    if (FIsPaged && (FIsCut || FFetched == FLimit))
        KeepKey(row);
    if (FBufferSize > StatementSize)
        HandOver(pipe);
    return !FIsCut && !FIsStopped;
}

// An average that is far too small must not make the next fetch as large again.
void TDbmTableRows::AdaptLimit()
{
    if (FIsCut)
        FLimit = qMax<qint64>(1, FFetched / 2);
}

void TDbmTableRows::KeepKey(const TMyQuery::TRowView &row)
{
    FLastKey.clear();
    for (const int at : FKeyFields)
        FLastKey += KeyLiteral(FInfos[static_cast<size_t>(at)],
                               {row.Cells[at], static_cast<qsizetype>(row.Lengths[at])});
}

void TDbmTableRows::HandOver(TDbmStatementPipe &pipe)
{
    TDbmRowsStatement statement;
    statement.Text = std::exchange(FRows, {});
    statement.Offset = FProcessed;
    statement.Count = FCount;
    statement.Needs = FFormatter->TakeNeeds();
    FProcessed += FCount;
    FCount = FBufferSize = 0;
    FIsStopped = !pipe.Put(std::move(statement));
    FRows.reserve(StatementSize * 2);
}

QByteArray TDbmTableRows::Head() const
{
    QString head = FReplace ? "REPLACE" : "INSERT";
    if (FDelayed)
        head += " DELAYED";
    if (FIgnore && !FReplace)
        head += " IGNORE";
    head += " INTO " + FTargetTable;
    // Without a list the values are those of the visible columns alone.
    if (FHasInvisible)
        head += " (" + QuotedList(FNames) + ')';
    return (head + " VALUES").toUtf8();
}
