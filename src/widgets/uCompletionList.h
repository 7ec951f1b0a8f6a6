#pragma once

#include <QFrame>
#include <QStringList>

class QListView;
class QStringListModel;

/// The list of candidates under the caret of an editor. The editor keeps the focus and the keys;
/// the list takes those that move in it or end it.
class TCompletionList : public QFrame
{
    Q_OBJECT
public:
    explicit TCompletionList(QWidget *editor);

    /// Shows the texts with the first one current, its corner at `corner` (global), or above the
    /// line of that height when there is no room below.
    void Open(const QStringList &texts, const QPoint &corner, int lineHeight);
    /// Narrows or replaces what an open list shows.
    void SetTexts(const QStringList &texts);
    QStringList Texts() const;
    int CurrentRow() const;
    /// True when the key was meant for the list.
    bool TakeKey(QKeyEvent *key);

Q_SIGNALS:
    /// The row was chosen; the list is closed.
    void OnChosen(int row);

private:
    void FitSize();
    void Move(int rows);
    void Choose();

    static constexpr int LinesInWindow = 10;
    QWidget *FEditor;
    QListView *FView;
    QStringListModel *FModel;
    QPoint FCorner;
    int FLineHeight = 0;
};
