#pragma once

#include "model/uDbmList.h"

class TDbmDatabaseItem;

/// The text of a routine's parameter list.
class TDbmRoutineParamsItem : public TDbmElement
{
public:
    explicit TDbmRoutineParamsItem(TDbmElement *owner) : TDbmElement(owner) {}

    const QString &GetValue()
    {
        Process();
        return FValue;
    }

protected:
    void DoProcess() override;

private:
    QString FValue;
};

/// One procedure or function of a database.
class TDbmRoutineItem : public TDbmItem<TDbmRoutineEntity>
{
public:
    explicit TDbmRoutineItem(TDbmElement *owner) : TDbmItem(owner) {}

    TDbmDatabaseItem &Database() const;
    TDbmRoutineParamsItem &Params() { return Child(FParams); }
    QString GetSecurityTypeDisplayString();

protected:
    void DoRequestProcess() override;

private:
    std::shared_ptr<TDbmRoutineParamsItem> FParams;
};

/// Deliberate: a function and a procedure of one name share one item, which stands in the list
/// twice.
class TDbmRoutineList
    : public TDbmNamedList<TDbmRoutineItem, TDbmRoutineEntity, &TDbmRoutineEntity::RoutineName>
{
public:
    explicit TDbmRoutineList(TDbmElement *owner) : TDbmNamedList(owner) {}

    TDbmDatabaseItem &Database() const;
    int CountByType(TDbmRoutineType routineType);

protected:
    QList<TDbmRoutineEntity> SelectEntities() override;
};
