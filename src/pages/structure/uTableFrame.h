#pragma once

#include "pages/structure/uTableTabsFrame.h"

class TAppManagerUtils;
class TSqlViewerFrame;
class TTableStructureFrame;

/// A table in tabs: its rows, its columns, keys and triggers, its properties and its text.
class TTableFrame : public TTableTabsFrame
{
    Q_OBJECT
public:
    explicit TTableFrame(QWidget *owner) : TTableTabsFrame(owner) {}

    void Process() override;
    // Each turns to the tab of what it made and gives whether it was made.
    bool CreateField();
    bool CreateIndex();
    bool CreateReference();
    bool CreateTrigger();

protected:
    void AddActions() override;
    void AddTabs() override;

private:
    enum TTab {
        ttData,
        ttStructure,
        ttFields,
        ttIndexes,
        ttReferences,
        ttDependencies,
        ttTriggers,
        ttInfo,
        ttDDL
    };
    using TOperation = bool (TAppManagerUtils::*)(const QString &databaseName,
                                                  const QString &tableName);

    bool Create(TOperation operation, TTab tab);
    void ShowTabsOf(bool isReal);
    QStringList Info() const;
    QString DDL() const;
    void Refresh();

    QAction *actOptions = nullptr; // children
    TTableStructureFrame *FStructureFrame = nullptr;
    TSqlViewerFrame *FDDLFrame = nullptr;
};
