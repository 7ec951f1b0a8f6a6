#include "widgets/uDataSetCellDelegate.h"

#include "widgets/uDataSetCellEditor.h"
#include "widgets/uDataSetModel.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QPainter>
#include <algorithm>

namespace {

constexpr uint SetFlag = 2048; // of the protocol

TDataSetCellKind KindOf(const TField &field, bool hasMembers)
{
    if (hasMembers)
        return field.Info().Flags & SetFlag ? ckSeveral : ckOne;
    switch (field.DataType()) {
    case ftDate:
        return ckDate;
    case ftDateTime:
        return ckMoment;
    case ftString:
    case ftMemo:
        return ckText;
    default:
        return ckLine;
    }
}

} // namespace

// A cell is a line of text. The style's own way lays it out twice, as if it could be anything, and
// a screen of cells would take as long as the eye can see.
void TDataSetCellDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const
{
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QStyle *style = cell.widget ? cell.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &cell, painter, cell.widget);
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &cell, cell.widget) + 1;
    const QRect room = cell.rect.adjusted(margin, 0, -margin, 0);
    if (cell.text.isEmpty() || room.width() <= 0)
        return;
    if (cell.fontMetrics.horizontalAdvance(cell.text) > room.width())
        cell.text = cell.fontMetrics.elidedText(cell.text, cell.textElideMode, room.width());
    const QPalette::ColorGroup group =
        !cell.state.testFlag(QStyle::State_Enabled) ? QPalette::Disabled
        : cell.state.testFlag(QStyle::State_Active) ? QPalette::Active
                                                    : QPalette::Inactive;
    const bool isSelected = cell.state.testFlag(QStyle::State_Selected);
    painter->setPen(
        cell.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text));
    painter->setFont(cell.font);
    const auto alignment = QStyle::visualAlignment(cell.direction, cell.displayAlignment);
    painter->drawText(room, int(alignment) | Qt::TextSingleLine, cell.text);
}

QWidget *TDataSetCellDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                            const QModelIndex &index) const
{
    const auto *model = static_cast<const TDataSetModel *>(index.model());
    const QStringList members = model->Members(index.column());
    const TDataSetCellKind kind = KindOf(*model->FieldOf(index.column()), !members.isEmpty());
    auto *editor = new TDataSetCellEditor(kind, members, parent);
    editor->SetName(model->FieldName(index.column()));
    FEditor = editor;
    auto *self = const_cast<TDataSetCellDelegate *>(this);
    editor->Control()->installEventFilter(self);
    connect(editor, &TDataSetCellEditor::OnGrown, self, [self, editor] {
        editor->Control()->installEventFilter(self);
        Place(*editor, editor->geometry());
    });
    connect(editor, &TDataSetCellEditor::OnChosen, self, [self, editor] { self->End(editor); });
    return editor;
}

void TDataSetCellDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *cell = static_cast<TDataSetCellEditor *>(editor);
    cell->SetText(index.data(Qt::EditRole).toString());
    // A long text has made a box in place of the line.
    cell->Control()->installEventFilter(const_cast<TDataSetCellDelegate *>(this));
}

void TDataSetCellDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                        const QModelIndex &index) const
{
    const auto *cell = static_cast<TDataSetCellEditor *>(editor);
    if (cell->IsModified())
        model->setData(index, cell->Text(), Qt::EditRole);
}

void TDataSetCellDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                                const QModelIndex &) const
{
    Place(*editor, option.rect);
}

// A box is larger than its cell and stays inside the grid.
void TDataSetCellDelegate::Place(QWidget &editor, QRect place)
{
    const QFontMetrics metrics = editor.fontMetrics();
    const QRect room = editor.parentWidget()->rect();
    if (static_cast<TDataSetCellEditor &>(editor).HasLines()) {
        place.setWidth(
            std::min(std::max(place.width(), metrics.averageCharWidth() * 40), room.width()));
        place.setHeight(std::min(metrics.lineSpacing() * 8, room.height()));
        if (place.bottom() > room.bottom())
            place.moveBottom(room.bottom());
    } else if (editor.layout()->count() > 1) {
        // The button needs its place in a narrow column too.
        place.setWidth(std::max(place.width(), metrics.averageCharWidth() * 14));
    }
    if (place.right() > room.right() && place.left() > room.left())
        place.moveRight(std::max(room.right(), place.width() - 1));
    editor.setGeometry(place);
}

bool TDataSetCellDelegate::HandleKey(TDataSetCellEditor &editor, const QKeyEvent &key)
{
    const bool isDown = key.key() == Qt::Key_Down && key.modifiers() & Qt::AltModifier;
    if (key.key() == Qt::Key_F4 || isDown) {
        editor.PressButton();
        return true;
    }
    const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (!isEnter || (editor.HasLines() && !(key.modifiers() & Qt::ControlModifier)))
        return false; // Enter is a line break in a box
    // Once the key is done with. The focus may have ended the edit by then, and the editor be gone.
    QMetaObject::invokeMethod(
        this, [this, left = QPointer(&editor)] { End(left); }, Qt::QueuedConnection);
    return true;
}

void TDataSetCellDelegate::End(TDataSetCellEditor *editor)
{
    if (!editor || editor->isHidden())
        return;
    const QPointer<TDataSetCellEditor> left = editor;
    Q_EMIT commitData(editor);
    if (left)
        Q_EMIT closeEditor(left, SubmitModelCache);
}

// The keys go to the control inside of the editor, and what is committed is the editor.
bool TDataSetCellDelegate::eventFilter(QObject *watched, QEvent *event)
{
    auto *editor = qobject_cast<TDataSetCellEditor *>(watched->parent());
    // One that was closed loses the focus as it goes, and has nothing to write any more.
    if (!editor || editor->isHidden())
        return false;
    if (event->type() == QEvent::KeyPress) {
        const auto &key = *static_cast<QKeyEvent *>(event);
        if (HandleKey(*editor, key))
            return true;
        if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter)
            return false;
    }
    if (event->type() == QEvent::FocusOut && editor->IsChoosing())
        return false;
    return QStyledItemDelegate::eventFilter(editor, event);
}
