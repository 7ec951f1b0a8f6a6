#pragma once

#include "app/uAppSession.h"
#include "core/uDacMySqlError.h"
#include "shell/uBaseFrame.h"
#include "support/uVariant.h"
#include "widgets/uStylePalette.h"

#include <QHash>
#include <memory>

class TDataFilterFrame;
class TDataFrame;
class TDbmData;
class TDbmManager;
class TTableDataControls;

/// Browses the rows of one table or view a page at a time, filtered and sorted by the server, and
/// is the way to inserting, changing and deleting them.
class TTableDataFrame : public TBaseFrame
{
    Q_OBJECT
public:
    explicit TTableDataFrame(QWidget *owner);
    ~TTableDataFrame() override;

    void Initialize(TDbmManager *manager); // not owned
    void SetParams(const QString &databaseName, const QString &tableName);
    /// Shows the page as it is now; reads it when it is stale.
    void Process();

    /// After SetParams; what the object cannot do is left out.
    void SetSessionData(const TTableDataSessionData &data);
    void GetSessionData(TTableDataSessionData &data) const;

protected:
    void DoCreate() override;
    void DoDestroy() override;

private:
    struct TFieldKind
    {
        TAppFieldKind Kind = TAppFieldKind::fkOther;
        bool IsText = false;
        bool IsBlob = false;
    };

    void ConnectDataFrame();
    void ConnectActions();
    void ConnectPageControls();
    void ReadFieldKinds();
    void GetDisplayText(const QString &fieldName, QString &text) const;
    void FetchPage();
    void ShowFetchError(const EDacMySqlError &error);
    void UpdateUI();
    void UpdateActions();
    void UpdateControls();
    void UpdateStatus();
    bool IsActive() const;
    bool IsTable() const;
    bool CanEdit() const;
    bool HasTextFields() const;
    void GotoPage(qint64 page);
    void PageTyped();
    void RowsTyped();
    void ShowText(bool checked);
    void SetFilterVisible(bool visible);
    void Refresh();
    void SortingChanged();
    void CreateRecord();
    void UpdateRecord();
    void DeleteRecord();
    void Truncate();
    void GetRowKey(QStringList &names, TVariantList &values) const;

    TDbmManager *FManager = nullptr;
    std::shared_ptr<TDbmData> FData;
    QString FDatabaseName;
    QString FTableName;
    QString FWhereCommandText; // in force while the filter is shown
    bool FDisableProcess = false;
    bool FFailed = false; // the last read did; its error stays until another read
    QHash<QString, TFieldKind> FFieldKinds;

    TTableDataControls *FControls = nullptr; // children
    TDataFrame *FDataFrame = nullptr;
    TDataFilterFrame *FDataFilterFrame = nullptr;
};
