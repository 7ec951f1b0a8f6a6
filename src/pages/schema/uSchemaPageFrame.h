#pragma once

#include "shell/uPageFrame.h"

#include <memory>

class QMenu;
class TDbmDatabaseItem;
class TDbmManager;
class TInfoPanelFrame;
class TPreparedTabs;

/// The workspace page of one database: its tables, views, routines and events side by side.
class TSchemaPageFrame : public TPageFrame
{
    Q_OBJECT
public:
    explicit TSchemaPageFrame(QWidget *owner) : TPageFrame(owner) {}

    void SetParams(TDbmManager *manager, const QString &databaseName); // not owned
    QString GetDatabaseName() const { return FDatabaseName; }

protected:
    QString DoGetTitle() const override { return FDatabaseName; }
    void DoCreate() override;
    void DoProcess() override;

private:
    enum TTab { ttTables, ttViews, ttProcedures, ttFunctions, ttEvents, ttInfo };

    void MakeToolBar();
    void MakeActions(QMenu &menu);
    void AddTabs();
    template <typename TFrame, typename... TArgs>
    void AddListTab(const char *name, const char *caption, const char *icon, TArgs... args);
    std::shared_ptr<TDbmDatabaseItem> Database() const; // nullptr when it is gone
    void WriteCaptions();
    void FillInfo();
    void Refresh();

    TDbmManager *FManager = nullptr;
    QString FDatabaseName;
    bool FIsActivated = false;
    TPreparedTabs *pcTabs = nullptr; // children
    TInfoPanelFrame *FInfoPanelFrame = nullptr;
};
