#pragma once

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QHeaderView>
#include <QMenu>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <stdexcept>

/// What a user does to a window: finds a control by its objectName, clicks, types, looks.
/// Everything throws std::runtime_error when the control is not there or not usable; the text
/// lists what is.
class TGuiTools
{
public:
    [[noreturn]] static void FailFind(const QObject *root, const QString &name,
                                      const char *className);

    /// Mouse click in the middle of the widget; it must be visible and enabled.
    static void Click(QWidget *widget, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    static void Click(QWidget *root, const QString &name);
    /// The middle of a section.
    static void ClickHeader(const QHeaderView *header, int section);
    /// With the left button, by way of the middle of the two places.
    static void Drag(QWidget *widget, const QPoint &from, const QPoint &to);
    /// Focuses the widget and types the text, or presses one key.
    static void Type(QWidget *widget, const QString &text);
    static void Press(QWidget *widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Replaces the whole content of an input by typing.
    static void Retype(QWidget *widget, const QString &text);
    /// Goes to the row of a list whose first cell shows this.
    static void Choose(QAbstractItemView *list, const QString &text);
    /// What a model shows from top to bottom: whole rows, cells joined by a bar, or one column.
    static QStringList Rows(const QAbstractItemModel &model);
    static QStringList Column(const QAbstractItemModel &model, int column);
    /// Triggers the action with this objectName below root; it must be enabled.
    static void Trigger(const QObject *root, const QString &name);
    /// Entry of a menu by its caption without "&"; it must be there and enabled.
    static QAction &NeedEntry(const QMenu *menu, const QString &caption);
    static void TriggerEntry(const QMenu *menu, const QString &caption);
    /// Asks the widget for its context menu, as a right click at this place does.
    static void AskMenu(QWidget *widget, const QPoint &place = {5, 5});
    /// Shows the window and waits until the window system shows it too.
    static void Show(QWidget *window);
};

/// The object of type T with this objectName below root (or root itself); throws with a list of
/// the names that are there.
template <class T>
T *Find(const QObject *root, const QString &name)
{
    if (auto *self = qobject_cast<T *>(const_cast<QObject *>(root));
        self && self->objectName() == name)
        return self;
    auto *found = root ? root->findChild<T *>(name) : nullptr;
    if (!found)
        TGuiTools::FailFind(root, name, T::staticMetaObject.className());
    return found;
}
