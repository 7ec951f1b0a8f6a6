#include "model/uDbmDataPool.h"

#include "core/uDbmProvider.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "model/uDbmViewList.h"
#include "sql/uDbmSelectFormatter.h"

#include <algorithm>

TDbmData::TDbmData(TDbmElement *owner)
    : TDbmElement(owner), FDataset(FProvider->Connection().CreateDataset())
{}

void TDbmData::SetParams(const QString &databaseName, const QString &tableName)
{
    FDatabaseName = databaseName;
    FTableName = tableName;
}

TDataSet &TDbmData::GetDataset()
{
    Process();
    return *FDataset;
}

template <typename T>
void TDbmData::Change(T &member, const T &value)
{
    if (member == value)
        return;
    RequestProcess();
    member = value;
}

void TDbmData::SetRowsPerPage(qint64 value)
{
    if (value >= 1)
        Change(FRowsPerPage, value);
}

void TDbmData::SetCurrentPage(qint64 value)
{
    if (value >= 1)
        Change(FCurrentPage, value);
}

void TDbmData::SetOrderFieldName(const QString &value)
{
    Change(FOrderFieldName, value);
}

void TDbmData::SetOrderAscending(bool value)
{
    Change(FOrderAscending, value);
}

void TDbmData::SetShowTextColumns(bool value)
{
    Change(FShowTextColumns, value);
}

void TDbmData::SetWhereCommandText(const QString &value)
{
    Change(FWhereCommandText, value);
}

QString TDbmData::FormatSelect()
{
    TDbmSelectFormatter select;
    select.FDatabaseName = FDatabaseName;
    select.FTableName = FTableName;
    select.FLimitOffset = (FCurrentPage - 1) * FRowsPerPage;
    select.FLimitRowCount = FRowsPerPage;
    if (!FOrderFieldName.isEmpty())
        select.FOrderFields = {FOrderFieldName};
    select.FOrderAscending = FOrderAscending;
    select.FWhereCommandText = FWhereCommandText;

    TDbmFieldList *fields = nullptr;
    std::shared_ptr<TDbmTableItem> table;
    std::shared_ptr<TDbmViewItem> view;
    if (Manager().TryGetTable(FDatabaseName, FTableName, table)) {
        fields = &table->Fields();
        // Whole or absent: a part of the key would join one row to several.
        table->TryGetRowKey(select.FPrimaryFieldNames);
    } else if (Manager().TryGetView(FDatabaseName, FTableName, view)) {
        fields = &view->Fields();
    }
    if (fields)
        fields->ForEach([&](TDbmFieldItem &field) {
            const QString &name = field.Entity().FieldName;
            select.FFieldNames.append(name);
            if (!FShowTextColumns && field.IsText())
                select.FTextFields.append(name);
            if (field.IsBlob())
                select.FBlobFields.append(name);
        });
    QString sql;
    select.Format(sql);
    return sql;
}

void TDbmData::DoProcess()
{
    FProvider->OpenConnection();
    const QString commandText = FormatSelect();
    TDacMySqlConnection &connection = FProvider->Connection();
    if (FDataset->Active() && commandText == FPrevCommandText)
        connection.RefreshDataset(*FDataset);
    else
        connection.ExecuteDataset(commandText, *FDataset);
    FPrevCommandText = commandText;
    ReadCounts();
}

void TDbmData::ReadCounts()
{
    FRowCount =
        FCommands->Data().ExecuteSelectRowCount(FDatabaseName, FTableName, FWhereCommandText);
    FPageCount =
        std::max<qint64>(1, FRowCount / FRowsPerPage + (FRowCount % FRowsPerPage != 0 ? 1 : 0));
    // Deliberate: this does not read again; the dataset stays empty for the page that is gone.
    FCurrentPage = std::min(FCurrentPage, FPageCount);
}

std::shared_ptr<TDbmData> TDbmDataPool::AddData()
{
    auto data = New<TDbmData>(this);
    FDataDict.insert(data);
    return data;
}

void TDbmDataPool::ReleaseData(const std::shared_ptr<TDbmData> &data)
{
    FDataDict.remove(data);
}

void TDbmDataPool::RequestProcessFor(const QString &databaseName, const QString &tableName)
{
    for (const auto &data : std::as_const(FDataDict))
        if (data->DatabaseName() == databaseName && data->TableName() == tableName)
            data->RequestProcess();
}

void TDbmDataPool::DoRequestProcess()
{
    for (const auto &data : std::as_const(FDataDict))
        data->RequestProcess();
}
