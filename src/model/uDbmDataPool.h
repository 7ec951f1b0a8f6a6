#pragma once

#include "client/uMyQuery.h"
#include "model/uDbmElement.h"

#include <QSet>

/// The rows of one table or view, a page at a time.
class TDbmData : public TDbmElement
{
public:
    explicit TDbmData(TDbmElement *owner);

    /// Does not mark stale.
    void SetParams(const QString &databaseName, const QString &tableName);
    const QString &DatabaseName() const { return FDatabaseName; }
    const QString &TableName() const { return FTableName; }

    /// Reads the page if it is stale. Raises EDacMySqlError; the old rows stand then, and the next
    /// call gives them without a statement.
    TDataSet &GetDataset();
    /// What a grid is bound to; nothing is read.
    TMyQuery &Dataset() { return *FDataset; }

    qint64 RowsPerPage() const { return FRowsPerPage; }
    qint64 CurrentPage() const { return FCurrentPage; } // the first is 1
    const QString &OrderFieldName() const { return FOrderFieldName; }
    bool OrderAscending() const { return FOrderAscending; }
    bool ShowTextColumns() const { return FShowTextColumns; }
    const QString &WhereCommandText() const { return FWhereCommandText; }
    // Each marks stale when the value differs. A number below 1 is ignored.
    void SetRowsPerPage(qint64 value);
    void SetCurrentPage(qint64 value);
    void SetOrderFieldName(const QString &value); // empty: no order
    void SetOrderAscending(bool value);
    void SetShowTextColumns(bool value); // false: text columns come as their length
    void SetWhereCommandText(const QString &value);

    // As of the last read.
    qint64 RowCount() const { return FRowCount; }
    qint64 PageCount() const { return FPageCount; }

protected:
    void DoProcess() override;

private:
    template <typename T>
    void Change(T &member, const T &value);
    QString FormatSelect();
    void ReadCounts();

    QString FDatabaseName;
    QString FTableName;
    std::unique_ptr<TMyQuery> FDataset;
    qint64 FRowsPerPage = 100;
    qint64 FCurrentPage = 1;
    QString FOrderFieldName;
    bool FOrderAscending = true;
    bool FShowTextColumns = false;
    QString FWhereCommandText;
    qint64 FRowCount = 0;
    qint64 FPageCount = 0;
    QString FPrevCommandText;
};

/// All open pages of rows of one manager, so that a change of a table reaches each of them.
class TDbmDataPool : public TDbmElement
{
public:
    explicit TDbmDataPool(TDbmElement *owner) : TDbmElement(owner) {}

    /// Kept alive by the caller and, until it is released, by the pool.
    std::shared_ptr<TDbmData> AddData();
    void ReleaseData(const std::shared_ptr<TDbmData> &data);
    /// Marks the data of one table stale; names are compared exactly.
    void RequestProcessFor(const QString &databaseName, const QString &tableName);

protected:
    void DoRequestProcess() override;

private:
    QSet<std::shared_ptr<TDbmData>> FDataDict;
};
