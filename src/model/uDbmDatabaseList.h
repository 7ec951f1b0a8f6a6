#pragma once

#include "model/uDbmList.h"

class TDbmDatabaseIndexColumnList;
class TDbmDatabaseReferenceColumnList;
class TDbmEventList;
class TDbmRoutineList;
class TDbmTableList;
class TDbmViewList;

/// One database of the server.
class TDbmDatabaseItem : public TDbmItem<TDbmDatabaseEntity>
{
public:
    explicit TDbmDatabaseItem(TDbmElement *owner);
    ~TDbmDatabaseItem() override;

    QString Name() { return Entity().DatabaseName; }
    TDbmTableList &Tables();
    TDbmViewList &Views();
    TDbmRoutineList &Routines();
    TDbmEventList &Events();
    /// The columns of all indexes and foreign keys, with one statement for the whole database.
    TDbmDatabaseIndexColumnList &IndexColumns();
    TDbmDatabaseReferenceColumnList &ForeignKeyColumns();

protected:
    void DoRequestProcess() override;

private:
    std::shared_ptr<TDbmTableList> FTables;
    std::shared_ptr<TDbmViewList> FViews;
    std::shared_ptr<TDbmRoutineList> FRoutines;
    std::shared_ptr<TDbmEventList> FEvents;
    std::shared_ptr<TDbmDatabaseIndexColumnList> FIndexColumns;
    std::shared_ptr<TDbmDatabaseReferenceColumnList> FForeignKeyColumns;
};

/// The databases that the account may see, or the one that the connection is bound to.
class TDbmDatabaseList
    : public TDbmNamedList<TDbmDatabaseItem, TDbmDatabaseEntity, &TDbmDatabaseEntity::DatabaseName>
{
public:
    explicit TDbmDatabaseList(TDbmElement *owner) : TDbmNamedList(owner) {}

    /// Raises EException when there is none.
    TItemPtr GetByName(const QString &name);
    /// For a drop-down that shows what the server has: the next read asks for the databases, while
    /// what was read of the objects inside them stays.
    void RequestNames() { RequestOwnProcess(); }

protected:
    TDbmComparer<TDbmDatabaseEntity> CreateEntityComparer() override;
    QList<TDbmDatabaseEntity> SelectEntities() override;
};
