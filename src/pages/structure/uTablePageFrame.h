#pragma once

#include "app/uAppSession.h"
#include "shell/uPageFrame.h"

class TDbmManager;
class TTableFrame;

/// The workspace page of one table or view; empty when the object is gone.
class TTablePageFrame : public TPageFrame
{
    Q_OBJECT
public:
    explicit TTablePageFrame(QWidget *owner) : TPageFrame(owner) {}

    void SetParams(TDbmManager *manager, const QString &databaseName,
                   const QString &tableOrViewName); // not owned
    QString GetDatabaseName() const { return FDatabaseName; }
    QString GetTableOrViewName() const { return FTableOrViewName; }
    void SetDataSessionData(const TTableDataSessionData &data);
    TTableDataSessionData GetDataSessionData() const;

protected:
    QString DoGetTitle() const override;
    void DoCreate() override;
    void DoProcess() override;

private:
    void KeepFrame(TTableFrame *&frame, bool isThere, bool isView);

    TDbmManager *FManager = nullptr;
    QString FDatabaseName;
    QString FTableOrViewName;
    TTableDataSessionData FDataSessionData; // until a frame takes it
    TTableFrame *FTableFrame = nullptr;     // children
    TTableFrame *FViewFrame = nullptr;
};
