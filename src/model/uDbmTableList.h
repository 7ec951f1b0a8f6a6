#pragma once

#include "model/uDbmList.h"
#include "sql/uDbmTableKeys.h"

class TDbmDatabaseItem;
class TDbmDependencyList;
class TDbmFieldList;
class TDbmIndexList;
class TDbmReferenceList;
class TDbmTriggerList;

/// The CREATE TABLE text of one table, from which its keys are read.
class TDbmTableDDLElement : public TDbmElement
{
public:
    explicit TDbmTableDDLElement(TDbmElement *owner) : TDbmElement(owner) {}

    /// Empty when the server did not tell it.
    const QString &GetValue()
    {
        Process();
        return FValue;
    }
    /// The keys in it, whole.
    const TDbmTableKeys &Keys();

protected:
    void DoProcess() override;

private:
    QString FValue;
    TDbmTableKeys FKeys;
    bool FKeysRead = false;
};

/// One table with its columns, keys and triggers.
class TDbmTableItem : public TDbmItem<TDbmTableEntity>
{
public:
    explicit TDbmTableItem(TDbmElement *owner);
    ~TDbmTableItem() override;

    TDbmFieldList &Fields();
    /// Whether its columns can be told without asking the server.
    bool HaveLoadedFields() const;
    TDbmIndexList &Indexes();
    TDbmReferenceList &References();
    TDbmDependencyList &Dependencies();
    TDbmTriggerList &Triggers();
    TDbmTableDDLElement &DDL();

    // As they were last read: nothing is read for them.
    const QString &DatabaseName() const { return FDatabaseName; }
    const QString &TableName() const { return FTableName; }

    bool IsTable() { return Entity().Info.TableType != tblSystemView; }
    bool CanUpdate() { return IsTable(); }
    bool CanDelete() { return IsTable(); }
    bool CanRename() { return IsTable(); }
    /// The columns that tell one row from all others; false when the primary key is missing or
    /// cannot be told whole, and rows must not be written by it.
    bool TryGetRowKey(QStringList &columnNames);

    QString GetRowFormatDisplayString();
    QString GetPackKeysDisplayString();
    QString GetChecksumDisplayString();
    QString GetDelayKeyWriteDisplayString();
    QString GetAvgRowLengthDisplayString();
    QString GetDataLengthDisplayString();
    QString GetDataFreeDisplayString();
    QString GetIndexLengthDisplayString();
    QString GetMaxDataLengthDisplayString(); // empty for 0

protected:
    void DoRequestProcess() override;
    void DoProcessEntity() override;
    void DoSetEntity() override;

private:
    std::shared_ptr<TDbmFieldList> FFields;
    std::shared_ptr<TDbmIndexList> FIndexes;
    std::shared_ptr<TDbmReferenceList> FReferences;
    std::shared_ptr<TDbmDependencyList> FDependencies;
    std::shared_ptr<TDbmTriggerList> FTriggers;
    std::shared_ptr<TDbmTableDDLElement> FDDL;
    QString FDatabaseName;
    QString FTableName;
};

/// The tables of a database, views not among them.
class TDbmTableList
    : public TDbmNamedList<TDbmTableItem, TDbmTableEntity, &TDbmTableEntity::TableName>
{
public:
    explicit TDbmTableList(TDbmElement *owner) : TDbmNamedList(owner) {}

    TDbmDatabaseItem &Database() const;
    /// Walks all tables.
    int GetTriggerCount();

protected:
    TDbmComparer<TDbmTableEntity> CreateEntityComparer() override;
    QList<TDbmTableEntity> SelectEntities() override;
};
