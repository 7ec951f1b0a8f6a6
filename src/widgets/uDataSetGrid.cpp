#include "widgets/uDataSetGrid.h"

#include "widgets/uDataSetCellDelegate.h"
#include "widgets/uDataSetCellEditor.h"
#include "widgets/uDataSetModel.h"
#include "widgets/uGridCopy.h"
#include "widgets/uGridSearchBar.h"
#include "widgets/uKeptMenu.h"
#include "widgets/uLayoutStore.h"
#include "widgets/uStylePalette.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>

namespace {

constexpr int MaximumWidth = 60;    // characters a column takes by itself
constexpr int SampledRows = 200;    // rows looked at for a width
constexpr int SampledCells = 20000; // and cells over all columns, for very wide results

} // namespace

TDataSetGrid::TDataSetGrid(QWidget *parent)
    : QTableView(parent), FModel(new TDataSetModel(this)), FDelegate(new TDataSetCellDelegate(this))
{
    setModel(FModel);
    setItemDelegate(FDelegate);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setAlternatingRowColors(true);
    setVerticalScrollMode(ScrollPerItem);
    setHorizontalScrollMode(ScrollPerPixel);
    setTabKeyNavigation(false);
    SetUpHeaders();
    MakeNullAction();
    FCopy = new TGridCopy(this);
    FSearchBar = new TGridSearchBar(this);
    FOwnActions = actions();
    SetEditMode(true);
    connect(FModel, &TDataSetModel::OnEditRefused, this, &TDataSetGrid::EditRefused);
    connect(FModel, &TDataSetModel::OnRecordMoved, this, &TDataSetGrid::FollowRecord);
    connect(FModel, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        FPlace.Take(*this, FColumnNames);
        KeepWidths();
        HideNote();
    });
    // Made behind the view's own, which drops focus and selection.
    connect(FModel, &QAbstractItemModel::modelReset, this, &TDataSetGrid::RestorePlace);
}

// The dataset may have dropped its columns already; the header has them until the reset is over.
void TDataSetGrid::KeepWidths()
{
    for (int column = 0; column < FColumnNames.size(); ++column)
        FWidths[FColumnNames[column]] = columnWidth(column);
    FColumnNames.clear();
}

TDataSetGrid::~TDataSetGrid() = default;

void TDataSetGrid::SetUpHeaders()
{
    QHeaderView *columns = horizontalHeader();
    columns->setSectionsMovable(true);
    columns->setSectionsClickable(true);
    columns->setHighlightSections(false);
    columns->setSortIndicatorShown(false);
    columns->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    columns->setMinimumSectionSize(fontMetrics().averageCharWidth() * 2);
    connect(columns, &QHeaderView::sectionClicked, this, &TDataSetGrid::HeaderClicked);
    connect(columns, &QHeaderView::sectionHandleDoubleClicked, this, &TDataSetGrid::FitColumn);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
    verticalHeader()->setHighlightSections(false);
    UpdateRowHeight();
}

void TDataSetGrid::UpdateRowHeight()
{
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
}

void TDataSetGrid::MakeNullAction()
{
    FSetNull = new QAction("Set NULL", this);
    FSetNull->setObjectName("actSetNull");
    FSetNull->setShortcut(QKeySequence("Ctrl+0"));
    FSetNull->setShortcutContext(Qt::WidgetWithChildrenShortcut); // also while a cell is edited
    addAction(FSetNull);
    connect(FSetNull, &QAction::triggered, this, &TDataSetGrid::SetNull);
}

void TDataSetGrid::SetNull()
{
    if (FSearchBar->isAncestorOf(QApplication::focusWidget()))
        return;
    const QModelIndex index = currentIndex();
    const QString reason = ReadOnlyReason(index);
    if (!reason.isEmpty())
        return ShowNote(index, reason);
    if (state() == EditingState && FDelegate->OpenEditor())
        closeEditor(FDelegate->OpenEditor(), QAbstractItemDelegate::RevertModelCache);
    FModel->SetNull(index);
}

bool TDataSetGrid::CommitEdit()
{
    TDataSetCellEditor *editor = FDelegate->OpenEditor();
    if (state() != EditingState || !editor)
        return true;
    FRefused = false;
    commitData(editor);
    if (std::exchange(FRefused, false)) {
        editor->setFocus();
        return false;
    }
    closeEditor(editor, QAbstractItemDelegate::NoHint);
    return true;
}

void TDataSetGrid::SetEditMode(bool value)
{
    FEditMode = value;
    FModel->SetEditable(value);
    FSetNull->setVisible(value);
    FSetNull->setEnabled(value);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(value ? SelectItems : SelectRows);
    if (!value) // the record keys are about whole rows
        selectionModel()->select(currentIndex(),
                                 QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    setEditTriggers(value ? EditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed)
                          : EditTriggers(NoEditTriggers));
}

void TDataSetGrid::MarkSort(int column, bool ascending)
{
    FSortedColumn = column;
    FSortedAscending = ascending;
    horizontalHeader()->setSortIndicatorShown(column >= 0);
    if (column >= 0)
        horizontalHeader()->setSortIndicator(column,
                                             ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

void TDataSetGrid::HeaderClicked(int column)
{
    // The header has turned its own mark by now, so it cannot tell what stood there before.
    if (!CommitEdit())
        return MarkSort(FSortedColumn, FSortedAscending);
    const bool ascending = column != FSortedColumn || !FSortedAscending;
    if (column == FSortedColumn && ascending)
        column = -1; // the third click takes the order off
    MarkSort(column, ascending);
    if (FSortsItself)
        FModel->sort(column, ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
    Q_EMIT OnSortRequested(column, ascending);
}

void TDataSetGrid::RememberWidths(const QString &key)
{
    const bool isNew = FWidthsKey.isEmpty();
    FWidthsKey = key;
    if (!isNew)
        return;
    TLayoutStore::WhenChanged(horizontalHeader(), [this] {
        if (!FColumnNames.isEmpty())
            TLayoutStore::WriteWidths(*horizontalHeader(), FWidthsKey, FColumnNames);
    });
}

void TDataSetGrid::RebuildColumns()
{
    const int columns = FModel->columnCount();
    const int samples = std::clamp(SampledCells / std::max(1, columns), 3, SampledRows);
    KeepWidths();
    QHash<QString, int> known = std::exchange(FWidths, {});
    if (known.isEmpty() && !FWidthsKey.isEmpty())
        known = TLayoutStore::ReadWidths(*horizontalHeader(), FWidthsKey);
    for (int column = 0; column < columns; ++column) {
        FColumnNames += FModel->FieldName(column);
        const int width = known.value(FModel->FieldName(column), 0);
        setColumnWidth(column, width > 0 ? width : WantedWidth(column, samples));
        horizontalHeader()->moveSection(horizontalHeader()->visualIndex(column), column);
    }
    updateGeometries();
    FPlace.RestoreAcross(*this);
}

// A grid of whole rows always has one that its record keys are about.
void TDataSetGrid::RestorePlace()
{
    const TDataSet *dataset = FModel->Dataset();
    const int row = dataset ? FModel->RowOfRecord(dataset->RecNo()) : -1;
    if (row < 0 || FModel->columnCount() == 0)
        return;
    const bool anew = std::exchange(FStartsAnew, false);
    if (FEditMode && !FPlace.IsKnown())
        return;
    int column = 0;
    for (int i = 0; i < FModel->columnCount() && column == 0; ++i)
        if (FModel->FieldName(i) == FPlace.Column())
            column = i;
    executeDelayedItemsLayout();
    updateGeometries();
    FFollowing = true;
    FPlace.Restore(*this, row, column, anew);
    FFollowing = false;
}

void TDataSetGrid::BestFit(const QStringList &fieldNames)
{
    for (int column = 0; column < FModel->columnCount(); ++column)
        if (fieldNames.contains(FModel->FieldName(column)))
            FitColumn(column);
}

void TDataSetGrid::FitColumn(int column)
{
    setColumnWidth(column, WantedWidth(column, SampledRows));
}

int TDataSetGrid::WantedWidth(int column, int samples) const
{
    const QFontMetrics metrics = fontMetrics();
    const int gap = metrics.averageCharWidth() * 2;
    // The mark of a sorted column stands beside its name.
    const int headerMargin = style()->pixelMetric(QStyle::PM_HeaderMargin);
    const int mark = style()->pixelMetric(QStyle::PM_HeaderMarkSize);
    int width = metrics.horizontalAdvance(FModel->FieldName(column)) + headerMargin * 4 + mark;
    const auto look = [&](int row) {
        const QString text = FModel->index(row, column).data().toString().left(MaximumWidth * 2);
        width = std::max(width, metrics.horizontalAdvance(text) + gap);
    };
    const int rows = FModel->rowCount();
    const int first = std::max(0, rowAt(0));
    for (int row = first; row < std::min(rows, first + samples); ++row)
        look(row);
    // A few from all over: the longest values need not stand at the start.
    for (int i = 0; i < std::min(samples / 4, rows); ++i)
        look(int(qint64(rows) * i / (samples / 4)));
    return std::min(width, metrics.averageCharWidth() * MaximumWidth);
}

QString TDataSetGrid::ReadOnlyReason(const QModelIndex &index) const
{
    const TDataSet *dataset = FModel->Dataset();
    if (!dataset || !index.isValid())
        return "There is no row.";
    const QString reason = dataset->ReadOnlyReason();
    if (!reason.isEmpty() || dataset->CanModifyField(index.column()))
        return reason;
    return "This column cannot be changed here.";
}

// Views ask this for every kind of trigger; only an attempt of the user's gets a reason.
bool TDataSetGrid::edit(const QModelIndex &index, EditTrigger trigger, QEvent *event)
{
    const bool wanted =
        FEditMode && (editTriggers() & trigger) && index.isValid() && state() != EditingState;
    if (!wanted)
        return QTableView::edit(index, trigger, event);
    const bool typed = trigger == AnyKeyPressed && event;
    if (typed && static_cast<QKeyEvent *>(event)->text().isEmpty())
        return false;
    if (EditInDialog(index))
        return false;
    const QString reason = ReadOnlyReason(index);
    if (!reason.isEmpty()) {
        ShowNote(index, reason);
        return false;
    }
    HideNote();
    return QTableView::edit(index, trigger, event);
}

// A dialog does not open inside of the click or key that asks for it.
bool TDataSetGrid::EditInDialog(const QModelIndex &index)
{
    const TDataSet *dataset = FModel->Dataset();
    if (!dataset || !dataset->CanModify())
        return false;
    const TField &field = dataset->FieldAt(index.column());
    const bool isThere = dataset->CanModifyField(index.column());
    std::function<void()> work;
    if (isThere && field.DataType() == ftBlob && FOnEditBytes)
        work = [this, cell = QPersistentModelIndex(index)] { EditBytes(cell); };
    else if (!isThere && FOnEditWhole)
        work = [this, name = field.FieldName()] { FOnEditWhole(name); };
    if (!work)
        return false;
    HideNote();
    QMetaObject::invokeMethod(this, work, Qt::QueuedConnection);
    return true;
}

void TDataSetGrid::EditBytes(const QModelIndex &index)
{
    const QPersistentModelIndex cell = index;
    const TField *field = FModel->FieldOf(cell.column());
    if (!cell.isValid() || !field)
        return;
    const QByteArray before = field->RawAt(FModel->RecordOfRow(cell.row())).toByteArray();
    QByteArray bytes = before;
    if (FOnEditBytes(field->FieldName(), bytes) && bytes != before && cell.isValid())
        FModel->SetValue(cell, bytes.isEmpty() ? TVariant() : TVariant(bytes));
}

void TDataSetGrid::EditRefused(const QModelIndex &index, const QString &message)
{
    FRefused = state() == EditingState;
    ShowNote(index, message);
}

// After a refusal the editor stays with what was typed; only Esc gives it up.
void TDataSetGrid::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    const bool refused = std::exchange(FRefused, false);
    if (refused && hint != QAbstractItemDelegate::RevertModelCache) {
        QTimer::singleShot(0, editor, [editor] { editor->setFocus(); });
        return;
    }
    HideNote();
    // The focus goes back to the grid in here, which must not end the edit once more.
    if (const auto *cell = qobject_cast<TDataSetCellEditor *>(editor))
        cell->Control()->removeEventFilter(FDelegate);
    QTableView::closeEditor(editor, hint);
}

void TDataSetGrid::ShowNote(const QModelIndex &index, const QString &text)
{
    HideNote();
    FNote = new QLabel(text, viewport());
    FNote->setObjectName("labNote");
    FNote->setTextFormat(Qt::PlainText);
    FNote->setWordWrap(true);
    FNote->setAutoFillBackground(true);
    FNote->setFrameShape(QFrame::StyledPanel);
    FNote->setMargin(fontMetrics().averageCharWidth());
    QPalette colors = palette();
    colors.setColor(QPalette::Window, palette().color(QPalette::ToolTipBase));
    colors.setColor(QPalette::WindowText, TAppPalette::ErrorText(palette()));
    FNote->setPalette(colors);
    FNote->setMaximumWidth(std::max(viewport()->width() - 4, 1));
    FNote->adjustSize();
    const QRect cell = visualRect(index);
    int top = cell.bottom() + 2;
    if (top + FNote->height() > viewport()->height())
        top = std::max(0, cell.top() - FNote->height() - 2);
    const int left = std::clamp(cell.left(), 0, std::max(0, viewport()->width() - FNote->width()));
    FNote->move(left, top);
    FNote->show();
    FNote->raise();
}

void TDataSetGrid::HideNote()
{
    delete FNote;
}

void TDataSetGrid::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTableView::currentChanged(current, previous);
    if (!FRefused)
        HideNote();
    TDataSet *dataset = FModel->Dataset();
    if (FFollowing || !current.isValid() || !dataset || dataset->State() != dsBrowse)
        return;
    FFollowing = true;
    dataset->SetRecNo(FModel->RecordOfRow(current.row()));
    FFollowing = false;
}

void TDataSetGrid::FollowRecord()
{
    if (FFollowing || !FModel->Dataset())
        return;
    const int row = FModel->RowOfRecord(FModel->Dataset()->RecNo());
    if (row < 0 || row == currentIndex().row())
        return;
    FFollowing = true;
    setCurrentIndex(FModel->index(row, std::max(0, currentIndex().column())));
    FFollowing = false;
}

bool TDataSetGrid::HandleRecordKey(int key)
{
    const TDataSet *dataset = FModel->Dataset();
    if (FEditMode || !dataset || !dataset->Active())
        return false;
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!dataset->IsEmpty())
            Q_EMIT OnUpdateRequested();
        return true;
    case Qt::Key_Insert:
        Q_EMIT OnAppendRequested();
        return true;
    case Qt::Key_Delete:
        if (!dataset->IsEmpty())
            Q_EMIT OnDeleteRequested();
        return true;
    default:
        return false;
    }
}

void TDataSetGrid::keyPressEvent(QKeyEvent *event)
{
    if ((event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier &&
        HandleRecordKey(event->key())) {
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

void TDataSetGrid::mouseDoubleClickEvent(QMouseEvent *event)
{
    QTableView::mouseDoubleClickEvent(event);
    if (!FEditMode && event->button() == Qt::LeftButton &&
        indexAt(event->position().toPoint()).isValid())
        Q_EMIT OnUpdateRequested();
}

void TDataSetGrid::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu &menu = KeptMenu(*this, "pmGrid");
    for (QAction *action : actions())
        if (!FOwnActions.contains(action))
            menu.addAction(action);
    if (!menu.isEmpty())
        menu.addSeparator();
    for (QAction *action :
         {FSetNull, FCopy->CopyAction(), FCopy->CopyWithHeadersAction(), FSearchBar->FindAction()})
        menu.addAction(action);
    menu.exec(event->globalPos());
}

void TDataSetGrid::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        UpdateRowHeight();
    if (event->type() == QEvent::PaletteChange && FModel)
        FModel->ResetColors();
}
