#pragma once

#include "app/uAppSession.h"
#include "shell/uPageFrame.h"

class TDbmManager;
class TTableFrame;
class TTableTabsFrame;
class TViewStructureFrame;

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
    /// Whether the tab of the rows was looked at.
    bool IsDataShown() const;

Q_SIGNALS:
    /// The name of the icon of what the page shows, as soon as it is known what that is.
    void OnUpdateImage(const QString &ImageName);

protected:
    QString DoGetTitle() const override;
    void DoCreate() override;
    /// Writes a cell that is being edited.
    bool DoCloseQuery() override;
    void DoProcess() override;

private:
    template <typename TFrame>
    void KeepFrame(TFrame *&frame, bool isThere);
    TTableTabsFrame *Frame() const; // nullptr while the page is empty

    TDbmManager *FManager = nullptr;
    QString FDatabaseName;
    QString FTableOrViewName;
    TTableDataSessionData FDataSessionData; // until a frame takes it
    TTableFrame *FTableFrame = nullptr;     // children, one of them at most
    TViewStructureFrame *FViewFrame = nullptr;
};
