#pragma once

#include <QPointer>
#include <QStyledItemDelegate>

class TDataSetCellEditor;

/// Paints and edits the cells of a dataset grid, each by the kind of its column. A value of several
/// lines or a very long one is edited in a box; Ctrl+Enter ends that edit, Enter breaks the line.
class TDataSetCellDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// The editor that is open, or nullptr.
    TDataSetCellEditor *OpenEditor() const { return FEditor; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void End(TDataSetCellEditor *editor);
    bool HandleKey(TDataSetCellEditor &editor, const QKeyEvent &key);
    static void Place(QWidget &editor, QRect place);

    mutable QPointer<TDataSetCellEditor> FEditor; // of the view
};
