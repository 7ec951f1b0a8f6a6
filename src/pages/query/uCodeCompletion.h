#pragma once

#include "tools/uCodeComplete.h"

#include <QObject>
#include <functional>

class QKeyEvent;
class TCompletionList;
class TTextEditor;

/// Completion of one editor: opens the list on Ctrl+Space and behind a point, narrows it while the
/// user types and puts what was chosen in the place of the word. Owned by the editor.
class TCodeCompletion : public QObject, private TCodeCompleteEditor
{
    Q_OBJECT
public:
    explicit TCodeCompletion(TTextEditor *editor);
    ~TCodeCompletion() override;

    TSynEditCodeCompleteManager &Manager() { return FManager; }
    /// Opens the list by hand, when there is something to show.
    void Execute();
    void Cancel();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool KeyPressed(QKeyEvent *key);
    void Update();
    bool TryFindMatches();
    void Insert(int row);

    QString Text() const override;
    QString LineBeforeCaret() const override;
    qint32 CaretLine() const override;
    qint32 CaretChar() const override;

    TTextEditor *FEditor;
    TSynEditCodeCompleteManager FManager;
    TCompletionList *FList; // child widget of the editor
    QList<TCodeCompleteMatch> FMatches;
    bool FUpdates = false; // an update is on its way
};
