#pragma once

#include <QObject>

class QAction;
class QMenu;
class TTextEditor;

/// The actions of an editor, with their keys, and its context menu.
class TTextEditorActions : public QObject
{
    Q_OBJECT

public:
    explicit TTextEditorActions(TTextEditor *editor);

    /// Shows the context menu; it deletes itself.
    void Popup(const QPoint &globalPosition);

private:
    struct TEntry;
    QAction *Add(const TEntry &entry);
    void UpdateStates();
    QAction *Find(const char *name) const;

    TTextEditor *FEditor; // parent
};
