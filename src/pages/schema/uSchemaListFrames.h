#pragma once

#include "model/uDbmEntityTypes.h"
#include "pages/structure/uObjectListFrame.h"
#include "shell/uAppDialogs.h"

#include <functional>
#include <optional>

class TAppManagerPageUtils;
class TAppManagerUtils;
class TDbmDatabaseItem;
class TDbmManager;

/// The objects of one kind in a database, with a context menu that opens, makes and changes them.
class TSchemaListFrame : public TObjectListFrame
{
    Q_OBJECT
public:
    explicit TSchemaListFrame(QWidget *owner) : TObjectListFrame(owner) {}

    void SetParams(TDbmManager *manager, const QString &databaseName); // not owned
    /// Shows what the model holds; nothing when the database is not there.
    void Process();

protected:
    struct TActionRow
    {
        const char *Name;
        const char *Caption;
        const char *Hint;
        bool NeedsFocus;
        std::function<void(const QString &name)> Work;
        const char *Icon;
        std::optional<TAppDialogKind> Dialog = {}; // disabled while there is no such dialog
    };

    void DoCreate() override;
    virtual std::vector<TObjectListRow> ReadRows(TDbmDatabaseItem &database) = 0;
    void AddActions(const std::vector<TActionRow> &rows);
    /// The action that a double click and Enter stand for.
    void SetDefaultAction(const char *name);
    static TAppManagerUtils &Utils();
    static TAppManagerPageUtils &PageUtils();

    TDbmManager *FManager = nullptr;
    QString FDatabaseName;

private:
    void UpdateActions();

    std::vector<std::pair<QAction *, TActionRow>> FActions;
};

class TSchemaTablesFrame : public TSchemaListFrame
{
    Q_OBJECT
public:
    explicit TSchemaTablesFrame(QWidget *owner) : TSchemaListFrame(owner) {}

protected:
    void DoCreate() override;
    std::vector<TObjectListRow> ReadRows(TDbmDatabaseItem &database) override;
};

class TSchemaViewsFrame : public TSchemaListFrame
{
    Q_OBJECT
public:
    explicit TSchemaViewsFrame(QWidget *owner) : TSchemaListFrame(owner) {}

protected:
    void DoCreate() override;
    std::vector<TObjectListRow> ReadRows(TDbmDatabaseItem &database) override;
};

/// Either the procedures or the functions.
class TSchemaRoutinesFrame : public TSchemaListFrame
{
    Q_OBJECT
public:
    explicit TSchemaRoutinesFrame(QWidget *owner) : TSchemaListFrame(owner) {}

    void SetParams(TDbmManager *manager, const QString &databaseName, TDbmRoutineType routineType);

protected:
    void DoCreate() override;
    std::vector<TObjectListRow> ReadRows(TDbmDatabaseItem &database) override;

private:
    TDbmRoutineType FRoutineType = rtProcedure;
};

class TSchemaEventsFrame : public TSchemaListFrame
{
    Q_OBJECT
public:
    explicit TSchemaEventsFrame(QWidget *owner) : TSchemaListFrame(owner) {}

protected:
    void DoCreate() override;
    std::vector<TObjectListRow> ReadRows(TDbmDatabaseItem &database) override;
};
