#pragma once

#include "app/uAppSession.h"
#include "shell/uBaseFrame.h"

class QAction;
class TDbmManager;
class TInfoPanelFrame;
class TPreparedTabs;
class TSqlViewerFrame;
class TTableDataFrame;
class TTableFieldsFrame;
class TTableListFrame;

/// A table or a view in tabs: its rows, its columns, keys and triggers, its properties and its
/// text. A view has rows, columns and properties.
class TTableFrame : public TBaseFrame
{
    Q_OBJECT
public:
    explicit TTableFrame(QWidget *owner) : TBaseFrame(owner) {}

    void Initialize(TDbmManager *manager, bool isView); // not owned
    /// Also after a rename: the page follows.
    void SetParams(const QString &databaseName, const QString &tableName);
    void SetDataSessionData(const TTableDataSessionData &data);
    TTableDataSessionData GetDataSessionData() const;
    void Process();

protected:
    void DoCreate() override;

private:
    enum TTab { ttData, ttFields, ttIndexes, ttReferences, ttTriggers, ttInfo, ttDDL };

    void MakeToolBar();
    void AddTabs();
    template <typename TFrame>
    void AddListTab(const char *name, const char *caption, const char *icon);
    void ProcessTable();
    void ProcessView();
    void FillInfo();
    QStringList TableInfo() const;
    QStringList ViewInfo() const;
    void Refresh();

    TDbmManager *FManager = nullptr;
    bool FIsView = false;
    QString FDatabaseName;
    QString FTableName;
    TTableDataSessionData FDataSessionData; // until the data tab is visited
    TPreparedTabs *pcTabs = nullptr;        // children
    QAction *actOptions = nullptr;
    QAction *actClone = nullptr;
    TTableDataFrame *FDataFrame = nullptr;
    TInfoPanelFrame *FInfoPanelFrame = nullptr;
    TSqlViewerFrame *FDDLFrame = nullptr;
    std::vector<TTableListFrame *> FListFrames;
};
