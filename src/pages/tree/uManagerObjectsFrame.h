#pragma once

#include "pages/tree/uObjectsTree.h"
#include "shell/uBaseFrame.h"

#include <QHash>
#include <functional>
#include <memory>

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

    void BuildLayout();
    QWidget *BuildToolBar();
    void ConnectTree();
    void MakeActions();
    std::vector<TActionRow> DatabaseActions();
    std::vector<TActionRow> ObjectActions();
    void FillDatabases();
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
    void OpenObject();
    void RenameObject();
    void DeleteObject();
    void Refresh();

    TDbmManager *FManager = nullptr;
    TAppManagerUtils *FUtils = nullptr;
    TAppManagerPageUtils *FPageUtils = nullptr;
    QString FSelectedDatabase; // of the session, used once
    bool FProcessed = false;
    QString FLastDatabaseProcessed;
    std::unique_ptr<TObjectsTree> FTree;

    struct TAction
    {
        QAction *Action = nullptr;
        bool HasWork = false; // without work it is disabled, never a dead click
    };
    QHash<QString, TAction> FActions;
    TVTDataManager *vtm = nullptr; // child, like all widgets
    QMenu *FpmTree = nullptr;
    TDropDownCombo *cbxDatabase = nullptr;
    QStackedWidget *pcBody = nullptr;
    QWidget *tshNone = nullptr;
    TVTTreeView *lvTree = nullptr;
};
