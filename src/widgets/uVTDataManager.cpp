#include "widgets/uVTDataManager.h"

#include "widgets/uVTDataModel.h"
#include "widgets/uVTDataSortValue.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMetaMethod>

#include <exception>
#include <utility>

namespace {

/// The shown sibling that takes the focus of a node about to go: the next that stays, else the one
/// before, else the parent.
TVTDataItem *Heir(const TVTDataItem *doomed, const TVTDataModel &model)
{
    const TVTDataList &list = *doomed->Owner();
    const auto stays = [&](int i) {
        return !list.Items(i)->IsDeleted() && model.IndexOf(list.Items(i)).isValid();
    };
    const int row = model.IndexOf(doomed).row();
    for (int i = row + 1; i < list.Count(); ++i) {
        if (stays(i))
            return list.Items(i);
    }
    for (int i = row - 1; i >= 0; --i) {
        if (stays(i))
            return list.Items(i);
    }
    return doomed->Parent();
}

} // namespace

TVTDataManager::TVTDataManager(TVTTreeView *view, QObject *parent)
    : QObject(parent ? parent : view), FView(view), FModel(new TVTDataModel(this)),
      FDataList(new TVTDataList(this, nullptr))
{
    FView->setModel(FModel.get());
    FView->installEventFilter(this);
    ConnectView();
}

TVTDataManager::~TVTDataManager()
{
    LeaveView();
}

void TVTDataManager::ConnectView()
{
    const auto raise = [this](TItemSignal itemSignal) {
        return [this, itemSignal](const QModelIndex &index) {
            if (FUpdateDepth == 0)
                Q_EMIT(this->*itemSignal)(TVTDataModel::ItemOf(index));
        };
    };
    connect(FView, &QTreeView::expanded, this, raise(&TVTDataManager::OnExpanded));
    connect(FView, &QTreeView::collapsed, this, raise(&TVTDataManager::OnCollapsed));
    connect(FView, &QTreeView::doubleClicked, this, raise(&TVTDataManager::OnDoubleClick));
    connect(FView->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &TVTDataManager::FocusMoved);
    connect(FView, &TVTTreeView::OnDestroying, this, &TVTDataManager::LeaveView);
    connect(FView, &TVTTreeView::OnEditorClosed, this, &TVTDataManager::EditorClosed);
    FView->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(FView, &QTreeView::customContextMenuRequested, this, &TVTDataManager::ShowContextMenu);
}

void TVTDataManager::LeaveView()
{
    if (FView) {
        FView->removeEventFilter(this);
        FView->disconnect(this);
        FView->setModel(nullptr);
    }
    FView = nullptr;
}

void TVTDataManager::SetColumns(const QStringList &captions, const QVector<TVTColumnType> &types)
{
    FModel->ColumnsAboutToChange();
    FColumns = captions;
    FColTypes = types;
    FModel->ColumnsChanged();
    FView->setHeaderHidden(captions.isEmpty());
    FView->header()->setSortIndicator(FSortColumn, FSortOrder);
    FView->setSortingEnabled(!captions.isEmpty());
}

void TVTDataManager::SetImages(const QVector<QIcon> &images)
{
    FImages = images;
    FView->viewport()->update();
}

void TVTDataManager::SetColTextColors(const QVector<QColor> &colors)
{
    FColTextColors = colors;
    FView->viewport()->update();
}

void TVTDataManager::SetSortColumnColor(const QColor &color)
{
    FSortColumnColor = color;
    FView->viewport()->update();
}

void TVTDataManager::SetSort(int column, Qt::SortOrder order)
{
    if (column == FSortColumn && order == FSortOrder)
        return;
    FSortColumn = column;
    FSortOrder = order;
    BeginTree();
    FDataList->Touch();
    EndTree(nullptr);
}

QVariant TVTDataManager::DataValue(const TVTDataItem &item, int column)
{
    const int asked = column < 0 ? 0 : column;
    const QVariant value = item.SortValue(asked);
    return value.isNull() ? item.Value(asked) : value;
}

int TVTDataManager::CompareDataValue(const TVTDataItem &a, const TVTDataItem &b, int column)
{
    return TVTDataSortValue(DataValue(a, column)).Compare(TVTDataSortValue(DataValue(b, column)));
}

TVTDataItem *TVTDataManager::FocusedItem() const
{
    return FView ? TVTDataModel::ItemOf(FView->currentIndex()) : nullptr;
}

void TVTDataManager::SetFocusedItem(TVTDataItem *item)
{
    const QModelIndex index = FModel->IndexOf(item);
    if (item && !index.isValid())
        return;
    FView->setCurrentIndex(index);
    if (index.isValid())
        FView->scrollTo(index);
}

TVTDataItem *TVTDataManager::ItemAt(const QPoint &viewportPos) const
{
    return TVTDataModel::ItemOf(FView->indexAt(viewportPos));
}

bool TVTDataManager::IsExpanded(const TVTDataItem *item) const
{
    return FView && FView->isExpanded(FModel->IndexOf(item));
}

void TVTDataManager::SetExpanded(const TVTDataItem *item, bool expanded)
{
    FView->setExpanded(FModel->IndexOf(item), expanded);
}

void TVTDataManager::EditCaption(TVTDataItem *item)
{
    SetFocusedItem(item);
    FEdited = FModel->IndexOf(item);
    FView->edit(FEdited);
}

bool TVTDataManager::eventFilter(QObject *watched, QEvent *event)
{
    if (FView && watched == FView && event->type() == QEvent::KeyPress && !FView->IsEditing()) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if ((key->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier && RaiseKey(key->key()))
            return true;
    }
    return QObject::eventFilter(watched, event);
}

void TVTDataManager::BeginTree()
{
    if (FUpdateDepth++ == 0 && FView)
        FView->BeginRefresh();
}

void TVTDataManager::EndTree(TVTDataList *swept)
{
    if (swept) {
        LeaveDoomed(*swept);
        FModel->RemoveDeleted(*swept);
    }
    if (FUpdateDepth > 1) {
        --FUpdateDepth;
        return;
    }
    FModel->Publish(*FDataList, FSortColumn, FSortOrder);
    FModel->Sort(*FDataList, FSortColumn, FSortOrder);
    ExpandPending();
    if (FView)
        FView->EndRefresh();
    FUpdateDepth = 0;
    if (std::exchange(FFocusChanged, false))
        ReportFocus();
}

void TVTDataManager::ItemAdded(TVTDataList *list)
{
    if (FUpdateDepth > 0 || !list->IsShown())
        return;
    FModel->Publish(*list, FSortColumn, FSortOrder);
    ExpandPending();
}

void TVTDataManager::ItemChanged(TVTDataItem *item)
{
    if (FUpdateDepth == 0 && item->FRow >= 0)
        FModel->RowChanged(item);
}

void TVTDataManager::HiddenChanged()
{
    if (FView)
        FView->Relayout();
}

void TVTDataManager::ExpandPending()
{
    for (const TVTDataItem *item : std::exchange(FToExpand, {}))
        SetExpanded(item, true);
}

void TVTDataManager::LeaveDoomed(const TVTDataList &swept)
{
    TVTDataItem *doomed = nullptr;
    TVTDataItem *item = FocusedItem();
    for (; item; item = item->Parent()) {
        if (item->FDeleted)
            doomed = item;
        if (item->Owner() == &swept)
            break;
    }
    // Marks outside of the swept list belong to a cycle that is still running.
    if (item && doomed)
        FView->setCurrentIndex(FModel->IndexOf(Heir(doomed, *FModel)));
}

void TVTDataManager::ReportFocus()
{
    // While a drawing that threw is being unwound, nobody may be called who could throw again.
    if (std::uncaught_exceptions() > 0) {
        QMetaObject::invokeMethod(
            this, [this] { Q_EMIT OnFocusChanged(FocusedItem()); }, Qt::QueuedConnection);
    } else {
        Q_EMIT OnFocusChanged(FocusedItem());
    }
}

void TVTDataManager::FocusMoved(const QModelIndex &current, const QModelIndex &previous)
{
    if (FUpdateDepth > 0)
        FFocusChanged = true;
    else if (TVTDataModel::ItemOf(current) != TVTDataModel::ItemOf(previous))
        Q_EMIT OnFocusChanged(TVTDataModel::ItemOf(current));
}

void TVTDataManager::ShowContextMenu(const QPoint &pos)
{
    const QPoint globalPos = FView->viewport()->mapToGlobal(pos);
    Q_EMIT OnContextMenu(ItemAt(pos), globalPos);
    if (FPopupMenu && !FPopupMenu->isEmpty())
        FPopupMenu->popup(globalPos);
}

bool TVTDataManager::RaiseKey(int key)
{
    TItemSignal raised = nullptr;
    if (key == Qt::Key_Return || key == Qt::Key_Enter)
        raised = &TVTDataManager::OnEnterKey;
    else if (key == Qt::Key_Delete)
        raised = &TVTDataManager::OnDeleteKey;
    else if (key == Qt::Key_F2)
        raised = &TVTDataManager::OnRenameKey;
    else if (key == Qt::Key_Insert)
        raised = &TVTDataManager::OnInsertKey;
    else
        return false;
    TVTDataItem *item = FocusedItem();
    // A key that nobody listens for is left to the dialog: Enter presses its default button.
    if ((!item && key != Qt::Key_Insert) || !isSignalConnected(QMetaMethod::fromSignal(raised)))
        return false;
    Q_EMIT(this->*raised)(item);
    return true;
}

TVTDataItem *TVTDataManager::EditedItem() const
{
    return TVTDataModel::ItemOf(FEdited);
}

void TVTDataManager::CaptionEntered(const QModelIndex &index, const QString &text)
{
    // The editor is still open here; a listener may refresh the tree or ask a question.
    QMetaObject::invokeMethod(
        this,
        [this, text, entered = QPersistentModelIndex(index)] {
            if (entered.isValid())
                Q_EMIT OnNewText(TVTDataModel::ItemOf(entered), text);
        },
        Qt::QueuedConnection);
}

void TVTDataManager::EditorClosed(bool canceled)
{
    TVTDataItem *item = EditedItem();
    FEdited = QPersistentModelIndex();
    if (canceled && item)
        Q_EMIT OnEditCanceled(item);
}
