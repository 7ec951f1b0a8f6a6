#pragma once

#include "pages/structure/uObjectListFrame.h"
#include "shell/uAppDialogs.h"

class TAppManagerUtils;
class TDbmManager;
class TDbmTableItem;

/// A list of what belongs to one table, with actions that make, change and delete it.
class TTableListFrame : public TObjectListFrame
{
    Q_OBJECT
public:
    explicit TTableListFrame(QWidget *owner) : TObjectListFrame(owner) {}

    void SetParams(TDbmManager *manager, const QString &databaseName, const QString &tableName);
    /// The page of a renamed table follows.
    void UpdateTableName(const QString &name) { FTableName = name; }
    /// Shows what the model holds; nothing when the object is not there.
    void Process();
    /// Of the frame when it stands among others: all rows, and room for some.
    int GetWorkHeight() const { return HeightOfRows(6); }

protected:
    /// Captions and hints of the actions; an action without a caption is not there.
    struct TActionTexts
    {
        QString New = "New", NewHint = {};
        QString Modify = "Modify", ModifyHint = {};
        QString Delete = "Delete", DeleteHint = {};
    };

    void DoCreate() override;
    virtual TActionTexts ActionTexts() const { return {}; }
    /// The dialog behind New and Modify.
    virtual TAppDialogKind DialogKind() const = 0;
    virtual std::vector<TObjectListRow> ReadRows(TDbmTableItem &table) = 0;
    /// For a view; nothing unless it has such a list.
    virtual std::vector<TObjectListRow> ReadViewRows() { return {}; }
    virtual void CreateItem() = 0;
    virtual void UpdateItem(const QString &name) = 0;
    virtual void DeleteItem(const QString &name) = 0;

    TDbmManager *FManager = nullptr; // not owned
    QString FDatabaseName;
    QString FTableName;

private:
    QAction *AddListAction(const char *name, const QString &caption, const QString &hint,
                           const char *icon, std::function<void()> work);
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
    TActionTexts ActionTexts() const override;
    TAppDialogKind DialogKind() const override { return adkField; }
    std::vector<TObjectListRow> ReadRows(TDbmTableItem &table) override;
    std::vector<TObjectListRow> ReadViewRows() override;
    void CreateItem() override;
    void UpdateItem(const QString &name) override;
    void DeleteItem(const QString &name) override;
};

class TTableIndexesFrame : public TTableListFrame
{
    Q_OBJECT
public:
    explicit TTableIndexesFrame(QWidget *owner) : TTableListFrame(owner) {}

protected:
    void DoCreate() override;
    TAppDialogKind DialogKind() const override { return adkIndex; }
    std::vector<TObjectListRow> ReadRows(TDbmTableItem &table) override;
    void CreateItem() override;
    void UpdateItem(const QString &name) override;
    void DeleteItem(const QString &name) override;
};

class TTableReferencesFrame : public TTableListFrame
{
    Q_OBJECT
public:
    explicit TTableReferencesFrame(QWidget *owner) : TTableListFrame(owner) {}

protected:
    void DoCreate() override;
    TAppDialogKind DialogKind() const override { return adkReference; }
    std::vector<TObjectListRow> ReadRows(TDbmTableItem &table) override;
    void CreateItem() override;
    void UpdateItem(const QString &name) override;
    void DeleteItem(const QString &name) override;
};

/// The foreign keys of other tables that point at this one; the actions work on them there.
class TTableDependenciesFrame : public TTableListFrame
{
    Q_OBJECT
public:
    explicit TTableDependenciesFrame(QWidget *owner) : TTableListFrame(owner) {}

protected:
    void DoCreate() override;
    TActionTexts ActionTexts() const override;
    TAppDialogKind DialogKind() const override { return adkReference; }
    std::vector<TObjectListRow> ReadRows(TDbmTableItem &table) override;
    void CreateItem() override {}
    void UpdateItem(const QString &name) override;
    void DeleteItem(const QString &name) override;

private:
    using TOperation = bool (TAppManagerUtils::*)(const QString &databaseName,
                                                  const QString &tableName,
                                                  const QString &referenceName);
    void RunOnReference(const QString &name, TOperation operation);
};

class TTableTriggersFrame : public TTableListFrame
{
    Q_OBJECT
public:
    explicit TTableTriggersFrame(QWidget *owner) : TTableListFrame(owner) {}

protected:
    void DoCreate() override;
    TActionTexts ActionTexts() const override { return {.Modify = "Recreate"}; }
    TAppDialogKind DialogKind() const override { return adkTrigger; }
    std::vector<TObjectListRow> ReadRows(TDbmTableItem &table) override;
    void CreateItem() override;
    void UpdateItem(const QString &name) override;
    void DeleteItem(const QString &name) override;
};
