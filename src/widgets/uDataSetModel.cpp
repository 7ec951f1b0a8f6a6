#include "widgets/uDataSetModel.h"

#include "support/uException.h"
#include "widgets/uDataSetSort.h"
#include "widgets/uGridCopy.h"

#include <QFont>
#include <QGuiApplication>
#include <QPalette>
#include <QScopedValueRollback>
#include <limits>
#include <numeric>

namespace {

// What a cell on the screen can show; laying out a megabyte of text for it would stop the window.
constexpr int MaximumShownChars = 400;
constexpr int MaximumTipChars = 2000;
constexpr uint MembersFlags = 256 | 2048; // ENUM and SET, of the protocol

QString OneLine(QString text)
{
    for (QChar &c : text)
        if (c == u'\n')
            c = QChar(0x21B5);
        else if (c == u'\r' || c == u'\t' || c == u'\0')
            c = u' ';
    return text;
}

} // namespace

TDataSetModel::TDataSetModel(QObject *parent) : QAbstractTableModel(parent) {}

TDataSetModel::~TDataSetModel()
{
    if (FDataset)
        FDataset->RemoveLink(this);
}

void TDataSetModel::Reset(const std::function<void()> &change)
{
    beginResetModel();
    change();
    endResetModel();
    Q_EMIT OnDataChange();
}

void TDataSetModel::SetDataset(TDataSet *dataset)
{
    if (dataset == FDataset)
        return;
    Reset([&] {
        if (FDataset)
            FDataset->RemoveLink(this);
        FDataset = dataset;
        if (FDataset)
            FDataset->AddLink(this);
        ForgetOrder();
        FColors.clear();
        FHasColor.clear();
    });
}

void TDataSetModel::SetOnGetDisplayText(TGetDisplayTextEvent event)
{
    FOnGetDisplayText = std::move(event);
}

void TDataSetModel::SetOnGetColumnColor(TGetColumnColorEvent event)
{
    FOnGetColumnColor = std::move(event);
    ResetColors();
}

void TDataSetModel::ResetColors()
{
    FColors.clear();
    FHasColor.clear();
}

void TDataSetModel::ForgetOrder()
{
    FSortColumn = -1;
    FOrder.clear();
    FRowOfRecord.clear();
}

qint64 TDataSetModel::RecordOfRow(int row) const
{
    if (row < 0 || row >= rowCount())
        return -1;
    return FOrder.empty() ? row : FOrder[size_t(row)];
}

int TDataSetModel::RowOfRecord(qint64 record) const
{
    if (record < 0 || record >= rowCount())
        return -1;
    if (FOrder.empty())
        return int(record);
    if (FRowOfRecord.empty()) {
        FRowOfRecord.resize(FOrder.size());
        for (size_t row = 0; row < FOrder.size(); ++row)
            FRowOfRecord[FOrder[row]] = uint32_t(row);
    }
    return int(FRowOfRecord[size_t(record)]);
}

QString TDataSetModel::FieldName(int column) const
{
    const TField *field = FieldOf(column);
    return field ? field->FieldName() : QString();
}

const TField *TDataSetModel::FieldOf(int column) const
{
    return IsActive() && column >= 0 && column < FDataset->FieldCount() ? &FDataset->FieldAt(column)
                                                                        : nullptr;
}

QStringList TDataSetModel::Members(int column) const
{
    const TField *field = FieldOf(column);
    return field && field->Info().Flags & MembersFlags && FOnGetMembers ? FOnGetMembers(*field)
                                                                        : QStringList();
}

int TDataSetModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid() || !IsActive())
        return 0;
    return int(std::min<qint64>(FDataset->RecordCount(), std::numeric_limits<int>::max()));
}

int TDataSetModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() || !IsActive() ? 0 : FDataset->FieldCount();
}

QVariant TDataSetModel::data(const QModelIndex &index, int role) const
{
    const qint64 record = index.isValid() ? RecordOfRow(index.row()) : -1;
    if (record < 0 || index.column() >= FDataset->FieldCount())
        return {};
    const TField &field = FDataset->FieldAt(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return field.IsNullAt(record) ? QString("NULL") : DisplayText(index.column(), record);
    case Qt::EditRole:
        return field.EditTextAt(record);
    case GridCopyRole:
        return field.IsNullAt(record) ? QString("NULL") : field.EditTextAt(record);
    case Qt::ForegroundRole:
        return Foreground(index.column(), field.IsNullAt(record));
    case Qt::FontRole: {
        if (!field.IsNullAt(record))
            return {};
        QFont font;
        font.setItalic(true);
        return font;
    }
    case Qt::TextAlignmentRole:
        return int(Qt::AlignVCenter | (field.IsNumeric() ? Qt::AlignRight : Qt::AlignLeft));
    case Qt::ToolTipRole:
        return ToolTip(index.column(), record);
    default:
        return {};
    }
}

QString TDataSetModel::DisplayText(int column, qint64 record) const
{
    const TField &field = FDataset->FieldAt(column);
    QString text = OneLine(field.DisplayTextAt(record, MaximumShownChars));
    if (FOnGetDisplayText)
        FOnGetDisplayText(field.FieldName(), text);
    return text;
}

QVariant TDataSetModel::Foreground(int column, bool isNull) const
{
    if (isNull)
        return QGuiApplication::palette().color(QPalette::PlaceholderText);
    if (!FOnGetColumnColor)
        return {};
    const auto at = size_t(column);
    if (FColors.size() <= at) {
        FColors.resize(size_t(FDataset->FieldCount()));
        FHasColor.resize(size_t(FDataset->FieldCount()));
    }
    if (!FHasColor[at]) {
        FHasColor[at] = true;
        FColors[at] = FOnGetColumnColor(FieldName(column));
    }
    return FColors[at].isValid() ? QVariant(FColors[at]) : QVariant();
}

// Only for what a cell cannot show in one line.
QString TDataSetModel::ToolTip(int column, qint64 record) const
{
    const QString text = FDataset->FieldAt(column).DisplayTextAt(record, MaximumTipChars);
    return text.size() > 60 || text.contains(u'\n')
               ? "<pre style='white-space: pre-wrap'>" + text.toHtmlEscaped() + "</pre>"
               : QString();
}

QVariant TDataSetModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
    if (role == Qt::DisplayRole)
        return FieldName(section);
    if (role == Qt::TextAlignmentRole && IsActive() && section < FDataset->FieldCount())
        return int(Qt::AlignVCenter |
                   (FDataset->FieldAt(section).IsNumeric() ? Qt::AlignRight : Qt::AlignLeft));
    return {};
}

Qt::ItemFlags TDataSetModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    // Whether the server takes a change is asked when an editor opens: painting sends nothing.
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren |
           (FIsEditable ? Qt::ItemIsEditable : Qt::NoItemFlags);
}

bool TDataSetModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !index.isValid())
        return false;
    const qint64 record = RecordOfRow(index.row());
    const TField &field = FDataset->FieldAt(index.column());
    const QString text = value.toString();
    // What was not touched is not written, and NULL does not become an empty text by a look at it.
    if (text == field.EditTextAt(record) && (!field.IsNullAt(record) || text.isEmpty()))
        return true;
    return SetValue(index, text);
}

bool TDataSetModel::SetNull(const QModelIndex &index)
{
    const qint64 record = RecordOfRow(index.row());
    if (record < 0 || FDataset->FieldAt(index.column()).IsNullAt(record))
        return record >= 0;
    return SetValue(index, TVariant());
}

bool TDataSetModel::SetValue(const QModelIndex &index, const TVariant &value)
{
    const qint64 record = RecordOfRow(index.row());
    QString refusal;
    {
        // Views put a changed value into the open editor, over what was typed.
        const QScopedValueRollback quiet(FIsWriting, true);
        try {
            FDataset->SetRecNo(record);
            FDataset->Edit();
            FDataset->FieldAt(index.column()).SetValue(value);
            FDataset->Post();
        } catch (const std::exception &e) {
            refusal = ExceptionMessage(e);
            FDataset->Cancel();
        }
    }
    if (!refusal.isEmpty()) {
        Q_EMIT OnEditRefused(index, refusal);
        return false;
    }
    RowChanged(record);
    Q_EMIT OnDataChange();
    return true;
}

void TDataSetModel::sort(int column, Qt::SortOrder order)
{
    FSortOrder = order;
    if (!IsActive() || column >= FDataset->FieldCount())
        column = -1;
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<qint64> records;
    for (const QModelIndex &index : before)
        records.push_back(RecordOfRow(index.row()));
    FRowOfRecord.clear();
    FSortColumn = column;
    if (column < 0)
        FOrder.clear();
    else
        FOrder = TDataSetSort::Order(*FDataset, column, order == Qt::AscendingOrder);
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i)
        after += index(RowOfRecord(records[size_t(i)]), before[i].column());
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void TDataSetModel::ActiveChanged()
{
    Reset([this] { ForgetOrder(); });
}

void TDataSetModel::CursorMoved()
{
    Q_EMIT OnRecordMoved();
}

void TDataSetModel::RowChanged(qint64 row)
{
    const int at = RowOfRecord(row);
    if (at >= 0 && !FIsWriting)
        Q_EMIT dataChanged(index(at, 0), index(at, columnCount() - 1));
}

void TDataSetModel::RowInserted(qint64)
{
    Reset([this] { ForgetOrder(); });
}

void TDataSetModel::RowRemoved(qint64)
{
    Reset([this] { ForgetOrder(); });
}

void TDataSetModel::DatasetGone()
{
    Reset([this] {
        FDataset = nullptr;
        ForgetOrder();
    });
}
