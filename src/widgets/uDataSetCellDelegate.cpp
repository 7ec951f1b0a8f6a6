#include "widgets/uDataSetCellDelegate.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <algorithm>
#include <limits>

namespace {

constexpr int LongestLine = 1000; // characters; longer values are read in several lines

bool WantsLines(const QModelIndex &index)
{
    const QString text = index.data(Qt::EditRole).toString();
    return text.contains(u'\n') || text.contains(u'\r') || text.size() > LongestLine;
}

// The box knows one kind of line end, and its plain text makes blanks of no-break spaces: what was
// not typed goes back as it came.
QString BoxText(const QPlainTextEdit &box, const QString &before)
{
    const QString lineEnd = before.contains("\r\n")                             ? "\r\n"
                            : before.contains(u'\r') && !before.contains(u'\n') ? "\r"
                                                                                : "\n";
    return box.document()->toRawText().replace(QChar::ParagraphSeparator, lineEnd);
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
    const QString name = index.model()->headerData(index.column(), Qt::Horizontal).toString();
    if (WantsLines(index)) {
        auto *box = new QPlainTextEdit(parent);
        box->setObjectName("edCell");
        box->setAccessibleName(name);
        return box;
    }
    auto *edit = new QLineEdit(parent);
    edit->setObjectName("edCell");
    edit->setAccessibleName(name);
    edit->setFrame(false);
    // By itself the control cuts what is longer than 32767 characters.
    edit->setMaxLength(std::numeric_limits<int>::max());
    return edit;
}

void TDataSetCellDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    const QString text = index.data(Qt::EditRole).toString();
    if (auto *box = qobject_cast<QPlainTextEdit *>(editor)) {
        box->setPlainText(text);
        box->selectAll();
    } else if (auto *edit = qobject_cast<QLineEdit *>(editor)) {
        edit->setText(text);
        edit->selectAll();
    }
}

void TDataSetCellDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                        const QModelIndex &index) const
{
    if (const auto *box = qobject_cast<QPlainTextEdit *>(editor)) {
        if (box->document()->isModified())
            model->setData(index, BoxText(*box, index.data(Qt::EditRole).toString()), Qt::EditRole);
    } else if (const auto *edit = qobject_cast<QLineEdit *>(editor)) {
        if (edit->isModified() || edit->text() != index.data(Qt::EditRole).toString())
            model->setData(index, edit->text(), Qt::EditRole);
    }
}

void TDataSetCellDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                                const QModelIndex &) const
{
    QRect place = option.rect;
    const QFontMetrics metrics = editor->fontMetrics();
    if (qobject_cast<QPlainTextEdit *>(editor)) {
        const QRect room = editor->parentWidget()->rect();
        place.setWidth(
            std::min(std::max(place.width(), metrics.averageCharWidth() * 40), room.width()));
        place.setHeight(std::min(metrics.lineSpacing() * 8, room.height()));
        if (place.bottom() > room.bottom())
            place.moveBottom(room.bottom());
        if (place.right() > room.right())
            place.moveRight(room.right());
    }
    editor->setGeometry(place);
}

bool TDataSetCellDelegate::eventFilter(QObject *watched, QEvent *event)
{
    auto *box = qobject_cast<QPlainTextEdit *>(watched);
    if (box && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
        if (enter && !(key->modifiers() & Qt::ControlModifier))
            return false; // a line break
        if (enter) {
            Q_EMIT commitData(box);
            Q_EMIT closeEditor(box, QAbstractItemDelegate::NoHint);
            return true;
        }
    }
    return QStyledItemDelegate::eventFilter(watched, event);
}
