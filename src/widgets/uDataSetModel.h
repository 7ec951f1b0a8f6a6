#pragma once

#include "client/uDataSet.h"

#include <QAbstractTableModel>
#include <QColor>
#include <functional>
#include <vector>

/// A dataset as rows and columns of a view. Holds nothing but the order of the rows: what a cell
/// shows is made when it is asked for. Follows the dataset by itself. Never sends a statement
/// except to write an edit.
class TDataSetModel : public QAbstractTableModel, private TDataLink
{
    Q_OBJECT

public:
    using TGetDisplayTextEvent = std::function<void(const QString &FieldName, QString &Text)>;
    using TGetColumnColorEvent = std::function<QColor(const QString &FieldName)>;
    using TGetMembersEvent = std::function<QStringList(const TField &Field)>;

    explicit TDataSetModel(QObject *parent = nullptr);
    ~TDataSetModel() override;

    TDataSet *Dataset() const { return FDataset; }
    /// Not owned; nullptr for none.
    void SetDataset(TDataSet *dataset);
    void SetOnGetDisplayText(TGetDisplayTextEvent event);
    /// An invalid colour is the palette's. Asked once per column until ResetColors.
    void SetOnGetColumnColor(TGetColumnColorEvent event);
    void ResetColors();
    /// The values that an ENUM or SET column takes; asked when a cell is edited.
    void SetOnGetMembers(TGetMembersEvent event) { FOnGetMembers = std::move(event); }
    void SetEditable(bool value) { FIsEditable = value; }

    /// The dataset's row of a row on the screen, and back; -1 when there is none.
    qint64 RecordOfRow(int row) const;
    int RowOfRecord(qint64 record) const;
    QString FieldName(int column) const;
    const TField *FieldOf(int column) const; // nullptr when there is none
    QStringList Members(int column) const;   // empty unless it is an ENUM or a SET

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// Writes the text to the server. False when the server refuses; OnEditRefused tells why.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    bool SetNull(const QModelIndex &index);
    bool SetValue(const QModelIndex &index, const TVariant &value);
    /// Column -1 is the order of the answer.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    int SortColumn() const { return FSortColumn; }
    Qt::SortOrder SortOrder() const { return FSortOrder; }

Q_SIGNALS:
    void OnEditRefused(const QModelIndex &index, const QString &message);
    /// The dataset's current row is another one.
    void OnRecordMoved();
    /// Rows or columns are others, or a cell was written.
    void OnDataChange();

private:
    void ActiveChanged() override;
    void CursorMoved() override;
    void RowChanged(qint64 row) override;
    void RowInserted(qint64 row) override;
    void RowRemoved(qint64 row) override;
    void DatasetGone() override;

    bool IsActive() const { return FDataset && FDataset->Active(); }
    QString DisplayText(int column, qint64 record) const;
    QVariant Foreground(int column, bool isNull) const;
    QString ToolTip(int column, qint64 record) const;
    void Reset(const std::function<void()> &change);
    void ForgetOrder();

    TDataSet *FDataset = nullptr;
    bool FIsEditable = false;
    bool FIsWriting = false;
    int FSortColumn = -1;
    Qt::SortOrder FSortOrder = Qt::AscendingOrder;
    std::vector<uint32_t> FOrder; // record of each row; empty is the order of the answer
    mutable std::vector<uint32_t> FRowOfRecord; // the way back, made when it is asked for
    TGetDisplayTextEvent FOnGetDisplayText;
    TGetColumnColorEvent FOnGetColumnColor;
    TGetMembersEvent FOnGetMembers;
    mutable std::vector<QColor> FColors; // by column
    mutable std::vector<bool> FHasColor;
};
