#pragma once

#include "model/uDbmList.h"

class TDbmDatabaseItem;
class TDbmFieldList;

/// One view of a database.
class TDbmViewItem : public TDbmItem<TDbmViewEntity>
{
public:
    explicit TDbmViewItem(TDbmElement *owner);
    ~TDbmViewItem() override;

    TDbmFieldList &Fields();
    /// Whether its columns can be told without asking the server.
    bool HaveLoadedFields() const;

    // As they were last read: nothing is read for them.
    const QString &DatabaseName() const { return FDatabaseName; }
    const QString &ViewName() const { return FViewName; }

    QString GetCheckOptionDisplayString();
    QString GetUpdatableDisplayString();
    QString GetSecurityTypeDisplayString();

protected:
    void DoRequestProcess() override;
    void DoProcessEntity() override;
    void DoSetEntity() override;

private:
    std::shared_ptr<TDbmFieldList> FFields;
    QString FDatabaseName;
    QString FViewName;
};

class TDbmViewList : public TDbmNamedList<TDbmViewItem, TDbmViewEntity, &TDbmViewEntity::ViewName>
{
public:
    explicit TDbmViewList(TDbmElement *owner) : TDbmNamedList(owner) {}

    TDbmDatabaseItem &Database() const;
    /// Each view behind every view that its definition names with its database; views of a cycle
    /// stand in any order.
    TItems ToDependencySortedArray();

protected:
    TDbmComparer<TDbmViewEntity> CreateEntityComparer() override;
    QList<TDbmViewEntity> SelectEntities() override;
};
