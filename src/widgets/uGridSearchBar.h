#pragma once

#include <QFrame>
#include <QPointer>
#include <QStringMatcher>
#include <QTimer>
#include <vector>

class QAbstractItemModel;
class QAbstractItemView;
class QAction;
class QLabel;
class QLineEdit;
class QToolButton;

/// Finds a text in what an item view shows, without regard to case. Lies over the view's lower
/// right corner while it is open. A search runs in short steps between the events of the window, so
/// that a million rows can be searched and the search be stopped.
class TGridSearchBar : public QFrame
{
    Q_OBJECT

public:
    /// Gives the view its actions `actFind` (Ctrl+F), `actFindNext` (F3) and `actFindPrevious`
    /// (Shift+F3). The view becomes the owner; the bar is closed at first.
    explicit TGridSearchBar(QAbstractItemView *view);

    QAction *FindAction() const { return FFind; }
    bool IsSearching() const { return FTimer.isActive(); }
    void Open();
    /// Ends a search and gives the focus back to the view.
    void Close();
    /// Both start behind the focused cell, or the focused row where rows are selected as a whole,
    /// and come round from the other end.
    void FindNext();
    void FindPrevious();
    void Stop();

Q_SIGNALS:
    /// A search has come to its end; a stopped one has none.
    void OnFinished(bool found);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void MakeControls();
    QToolButton *MakeButton(const QString &name, const QString &hint, Qt::ArrowType arrow);
    QAction *MakeAction(const QString &name, const QString &caption, const QKeySequence &keys,
                        void (TGridSearchBar::*slot)());
    void TextEdited();
    void Start(int step, bool includesFocused);
    void Step();
    void Finish(bool found);
    bool IsMatch(qint64 position) const;
    void Show(qint64 position);
    void Place();
    int CellsPerRow() const { return FIsByRow ? 1 : int(FColumns.size()); }

    QAbstractItemView *FView;
    QLineEdit *FEdit;
    QLabel *FStatus;
    QAction *FFind;
    QTimer FTimer;

    // The search that runs. A position counts cells row by row, or rows.
    QPointer<QAbstractItemModel> FModel;
    std::vector<int> FColumns;
    QStringMatcher FMatcher;
    bool FIsByRow = true;
    int FStep = 1;
    qint64 FPosition = 0;
    qint64 FCount = 0;
    qint64 FLeft = 0;
};
