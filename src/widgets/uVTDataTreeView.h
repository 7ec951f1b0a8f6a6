#pragma once

#include <QPersistentModelIndex>
#include <QTreeView>
#include <QVector>

/// The view of a keyed tree: one row selected at a time, search by typing, and a refresh that is
/// painted once and leaves the rows where they are on the screen.
class TVTTreeView : public QTreeView
{
    Q_OBJECT

public:
    explicit TVTTreeView(QWidget *parent = nullptr, const QString &name = {});
    ~TVTTreeView() override;

    /// Holds painting back and notes which rows are where.
    void BeginRefresh();
    /// Puts the first row that is left back to its place and paints.
    void EndRefresh();
    /// For changes that a model has no signal for: an expander that came or went.
    void Relayout();

    bool IsEditing() const { return state() == EditingState; }

Q_SIGNALS:
    /// Still a whole view, unlike at QObject's destroyed().
    void OnDestroying();
    void OnEditorClosed(bool canceled);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

protected Q_SLOTS:
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    struct TPlace
    {
        QPersistentModelIndex Index;
        int Top; // pixels below the upper edge
    };

    void RestorePlaces();

    QVector<TPlace> FPlaces;
};
