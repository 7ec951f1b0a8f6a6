#pragma once

#include "shell/uBaseFrame.h"

#include <QColor>
#include <QHash>
#include <QStringList>
#include <functional>

class QMenu;
class TDataSet;
class TDataSetGrid;
class TDataSetModel;
class TField;

/// The data grid of the query page and the table data page: one column per field of a dataset.
class TDataFrame : public TBaseFrame
{
    Q_OBJECT
public:
    using TGetDisplayTextEvent = std::function<void(const QString &FieldName, QString &Text)>;
    using TGetColumnColorEvent = std::function<void(const QString &FieldName, QColor &Color)>;
    using TGetMembersEvent = std::function<QStringList(const TField &Field)>;
    using TRecordEvent = std::function<void(TDataSet *Dataset)>;

    explicit TDataFrame(QWidget *owner);
    ~TDataFrame() override;

    /// Attaches a dataset, which is not owned; nothing happens when it is the same one.
    void SetParams(TDataSet *dataset);
    void SetNullParams();
    /// Rebuilds the columns, sizes the new ones to their content, restores the sort mark.
    void Process();
    /// Sizes the columns of these fields to their content; unknown names are skipped.
    void BestFit(const QStringList &fieldNames);
    void SetPopupMenu(QMenu *menu); // not owned

    /// In edit mode cells are selected and edited in place and the row keys are inert; otherwise
    /// whole rows are selected and the keys work.
    bool EditMode() const { return FEditMode; }
    void SetEditMode(bool value);
    /// Writes what is being typed. False when the server refuses: the editor then stays as it is.
    bool CommitEdit();
    /// The next rows are others than those shown, so that the place goes to their top.
    void ForgetPlace();
    /// Where the owner orders the rows itself; else a click on a header sorts the rows at hand.
    void SetSortByOwner(bool value);
    const QString &SortFieldName() const { return FSortFieldName; }
    bool SortAscending() const { return FSortAscending; }
    void SetSort(const QString &fieldName, bool ascending);

    TDataSet *Dataset() const; // nullptr also when the dataset has gone meanwhile
    TDataSetGrid *Grid() const { return FGrid; }

    void SetOnGetDisplayText(TGetDisplayTextEvent event);
    void SetOnGetColumnColor(TGetColumnColorEvent event);
    /// The values that an ENUM or SET column takes.
    void SetOnGetMembers(TGetMembersEvent event);
    /// Edits a value that the rows have only the length of.
    void SetOnEditWhole(std::function<void(const QString &FieldName)> event);
    void SetOnAppendRecord(TRecordEvent event) { FOnAppendRecord = std::move(event); }
    void SetOnUpdateRecord(TRecordEvent event) { FOnUpdateRecord = std::move(event); }
    void SetOnDeleteRecord(TRecordEvent event) { FOnDeleteRecord = std::move(event); }

Q_SIGNALS:
    void OnSortingChanged();
    void OnDataChange();

protected:
    void DoCreate() override;
    void DoDestroy() override;
    void changeEvent(QEvent *event) override;

private:
    QColor ColumnColor(const QString &fieldName);
    void SortingChanged(int column, bool ascending);
    void RestoreSortMark();
    void Request(const TRecordEvent &event);

    bool FEditMode = true;
    bool FSortByOwner = false;
    QString FSortFieldName;
    bool FSortAscending = true;
    QHash<QString, QColor> FColumnStyleDict;
    TGetColumnColorEvent FOnGetColumnColor;
    TRecordEvent FOnAppendRecord, FOnUpdateRecord, FOnDeleteRecord;
    TDataSetGrid *FGrid = nullptr;   // child widget
    TDataSetModel *FModel = nullptr; // child of the grid
};
