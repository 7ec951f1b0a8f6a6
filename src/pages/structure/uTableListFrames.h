#pragma once

#include "pages/structure/uObjectListFrame.h"

class TDbmManager;
class TDbmTableItem;

/// A list of what belongs to one table, with actions that make, change and delete it.
class TTableListFrame : public TObjectListFrame
{
    Q_OBJECT
public:
    explicit TTableListFrame(QWidget *owner) : TObjectListFrame(owner) {}

    void SetParams(TDbmManager *manager, const QString &databaseName, const QString &tableName);
    /// Shows what the model holds; nothing when the object is not there.
    void Process();

protected:
    void DoCreate() override;
    virtual QString ModifyCaption() const { return "Modify"; }
    virtual std::vector<TObjectListRow> ReadRows(TDbmTableItem &table) = 0;
    /// For a view; nothing unless it has such a list.
    virtual std::vector<TObjectListRow> ReadViewRows() { return {}; }
    virtual void DeleteItem(const QString &name) = 0;

    TDbmManager *FManager = nullptr; // not owned
    QString FDatabaseName;
    QString FTableName;

private:
    void UpdateActions();

    bool FIsTable = false; // not a system view
    QAction *actNew = nullptr;
    QAction *actModify = nullptr;
    QAction *actDelete = nullptr;
};

class TTableFieldsFrame : public TTableListFrame
{
    Q_OBJECT
public:
    explicit TTableFieldsFrame(QWidget *owner) : TTableListFrame(owner) {}

protected:
    void DoCreate() override;
    std::vector<TObjectListRow> ReadRows(TDbmTableItem &table) override;
    std::vector<TObjectListRow> ReadViewRows() override;
    void DeleteItem(const QString &name) override;
};

class TTableIndexesFrame : public TTableListFrame
{
    Q_OBJECT
public:
    explicit TTableIndexesFrame(QWidget *owner) : TTableListFrame(owner) {}

protected:
    void DoCreate() override;
    std::vector<TObjectListRow> ReadRows(TDbmTableItem &table) override;
    void DeleteItem(const QString &name) override;
};

class TTableReferencesFrame : public TTableListFrame
{
    Q_OBJECT
public:
    explicit TTableReferencesFrame(QWidget *owner) : TTableListFrame(owner) {}

protected:
    void DoCreate() override;
    std::vector<TObjectListRow> ReadRows(TDbmTableItem &table) override;
    void DeleteItem(const QString &name) override;
};

class TTableTriggersFrame : public TTableListFrame
{
    Q_OBJECT
public:
    explicit TTableTriggersFrame(QWidget *owner) : TTableListFrame(owner) {}

protected:
    void DoCreate() override;
    QString ModifyCaption() const override { return "Recreate"; }
    std::vector<TObjectListRow> ReadRows(TDbmTableItem &table) override;
    void DeleteItem(const QString &name) override;
};
