#pragma once

#include "app/uAppSession.h"
#include "pages/structure/uPreparedTabs.h"
#include "shell/uBaseFrame.h"

class QAction;
class TDbmManager;
class TTableDataFrame;
class TTableListFrame;
class TToolBar;

/// What a table and a view have in common: tabs for the rows, for lists and for properties under a
/// tool bar.
class TTableTabsFrame : public TBaseFrame
{
    Q_OBJECT
public:
    explicit TTableTabsFrame(QWidget *owner) : TBaseFrame(owner) {}

    void Initialize(TDbmManager *manager); // not owned
    /// Also after a rename: the page follows.
    void SetParams(const QString &databaseName, const QString &tableName);
    void SetDataSessionData(const TTableDataSessionData &data);
    TTableDataSessionData GetDataSessionData() const;
    virtual void Process() = 0;

protected:
    void DoCreate() override;
    /// Once; in the order in which they stand.
    virtual void AddActions() = 0;
    virtual void AddTabs() = 0;

    /// In the tool bar; `work` runs in the shell's guard.
    QAction *AddAction(const char *name, const char *icon, const QString &caption,
                       const QString &hint, std::function<void()> work);
    void AddDataTab();
    template <typename TFrame>
    void AddListTab(const char *name, const char *caption, const char *icon);
    void AddInfoTab(const QStringList &captions, std::function<QStringList()> values);
    /// The tab's caption with the number of what stands on it.
    void SetCount(int tab, const char *caption, int count);

    TDbmManager *FManager = nullptr;
    QString FDatabaseName;
    QString FTableName;
    TPreparedTabs *pcTabs = nullptr; // child

private:
    TTableDataSessionData FDataSessionData; // until the data tab is visited
    TToolBar *FToolBar = nullptr;           // children
    TTableDataFrame *FDataFrame = nullptr;
    std::vector<TTableListFrame *> FListFrames;
};

template <typename TFrame>
void TTableTabsFrame::AddListTab(const char *name, const char *caption, const char *icon)
{
    auto frame = std::make_shared<TFrame *>(nullptr);
    pcTabs->AddTab(
        name, caption, icon,
        [this, frame](QWidget *owner) {
            *frame = New<TFrame>(owner);
            (*frame)->SetParams(FManager, FDatabaseName, FTableName);
            FListFrames.push_back(*frame);
            return *frame;
        },
        [frame] { (*frame)->Process(); });
}
