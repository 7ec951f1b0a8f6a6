#pragma once

#include "app/uAppSession.h"
#include "core/uDacMySqlError.h"
#include "shell/uBaseFrame.h"
#include "support/uVariant.h"
#include "widgets/uStylePalette.h"

#include <QHash>
#include <functional>
#include <memory>

class QAction;
class TDataFilterFrame;
class TDataFrame;
class TDbmData;
class TDbmManager;
class TDataSet;
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
    /// Writes what is being typed into a cell; false when the server refuses it.
    bool CommitEdit();

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
        QString TypeText;
    };
    /// What makes the rows of a page others than those of the page before.
    struct TPlace
    {
        qint64 Page = 0, RowsPerPage = 0;
        QString Order;
        bool Ascending = true;
        QString Where;
        bool operator==(const TPlace &) const = default;
    };
    class TQuietRows;

    void ConnectDataFrame();
    void ConnectActions();
    void ConnectPageControls();
    void ReadFieldKinds();
    void GetDisplayText(const QString &fieldName, QString &text) const;
    void FetchPage();
    TDataSet &ReadPage();
    void ShowFetchError(const EDacMySqlError &error);
    void UpdateUI();
    void UpdateActions();
    void UpdateControls();
    void UpdateStatus();
    bool IsActive() const;
    bool IsTable() const;
    bool CanEdit() const;
    bool HasTextFields() const;
    void Toggle(QAction *action, const std::function<void(bool checked)> &work);
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
    void OpenObject();
    void Truncate();
    void EditWhole(const QString &fieldName);
    TVariant ReadWhole(const QString &fieldName, const QStringList &names,
                       const TVariantList &values) const;
    bool EditValue(const QString &fieldName, const TVariant &before, TVariant &value) const;
    void GetRowKey(QStringList &names, TVariantList &values) const;

    TDbmManager *FManager = nullptr;
    std::shared_ptr<TDbmData> FData;
    QString FDatabaseName;
    QString FTableName;
    QString FWhereCommandText; // in force while the filter is shown
    bool FDisableProcess = false;
    TPlace FPlace;        // of the rows that are shown
    bool FFailed = false; // the last read did; its error stays until another read
    QHash<QString, TFieldKind> FFieldKinds;

    TTableDataControls *FControls = nullptr; // children
    TDataFrame *FDataFrame = nullptr;
    TDataFilterFrame *FDataFilterFrame = nullptr;
};
