#pragma once

#include "pages/tree/uObjectsTree.h"
#include "shell/uAppDialogs.h"
#include "shell/uBaseFrame.h"

#include <QHash>
#include <functional>
#include <memory>
#include <optional>

class QAction;
class QMenu;
class QStackedWidget;
class TAppManagerPageUtils;
class TAppManagerUtils;
class TAppSession;
class TDbmDatabaseItem;
class TDropDownCombo;

/// The left panel of a workspace: the selector of the current database and the tree of what it
/// holds, from which objects are opened, made, renamed and deleted.
class TManagerObjectsFrame : public TBaseFrame
{
    Q_OBJECT
public:
    explicit TManagerObjectsFrame(QWidget *owner);
    ~TManagerObjectsFrame() override;

    /// Refers to parts of the workspace, which outlive the frame.
    void Initialize(TDbmManager *manager, TAppManagerUtils *utils, TAppManagerPageUtils *pageUtils);
    void ReadSession(const TAppSession &session);
    void WriteSession(TAppSession &session) const;
    /// Draws what the lists hold; expansion, focus and scroll position stay.
    void Process();
    /// An empty name keeps the selection.
    void SelectDatabase(const QString &name);
    QString SelectedDatabase() const; // empty when none is selected

protected:
    void DoCreate() override;
    void DoDestroy() override;

private:
    struct TActionRow;
    using TNames = QStringList;
    using TOnTable = bool (TAppManagerUtils::*)(const QString &databaseName,
                                                const QString &tableName);

    void BuildLayout();
    QWidget *BuildToolBar();
    void ConnectTree();
    void MakeActions();
    std::vector<TActionRow> DatabaseActions();
    std::vector<TActionRow> ObjectActions();
    void FillDatabases();
    void KeepChoice();
    void DatabaseChosen();
    void DrawDatabase();
    void UpdateActions();
    void UpdateDatabaseActions();
    void UpdateObjectActions();
    void UpdateTreeMenu();
    static TNames TreeMenu(const TObjectsNode *node);
    void Enable(const char *name, bool enabled);
    void FillMenu(QMenu &menu, const TNames &names);
    void Trigger(const char *name);
    void Activated(TVTDataItem *item);
    const TObjectsNode *FocusedNode() const;
    /// The table that the focused node is or stands under; raises EException when there is none.
    TObjectsNode GetActiveTable() const;
    static TAppDialogKind DialogKind(const TObjectsNode &node);
    void OpenObject();
    void UpdateObject();
    void RenameObject();
    void DeleteObject();
    void Refresh();

    TDbmManager *FManager = nullptr;
    TAppManagerUtils *FUtils = nullptr;
    TAppManagerPageUtils *FPageUtils = nullptr;
    QString FSelectedDatabase; // of the session, used once
    bool FProcessed = false;
    QString FChosenDatabase; // the selected one, also while the list cannot be read
    QString FLastDatabaseProcessed;
    bool FHasEvents = false; // as of the last drawing: moving the focus must not ask the server
    bool FIsListOpen = false;
    std::unique_ptr<TObjectsTree> FTree;

    struct TAction
    {
        QAction *Action = nullptr;
        std::optional<TAppDialogKind> Dialog;
    };
    QHash<QString, TAction> FActions;
    TVTDataManager *vtm = nullptr; // child, like all widgets
    QMenu *FpmTree = nullptr;
    TDropDownCombo *cbxDatabase = nullptr;
    QStackedWidget *pcBody = nullptr;
    QWidget *tshNone = nullptr;
    TVTTreeView *lvTree = nullptr;
};
