#include "uGuiTools.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDir>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPixmap>
#include <QTest>

namespace {

[[noreturn]] void Fail(const QString &text)
{
    throw std::runtime_error(text.toStdString());
}

QString NameOf(const QObject *object)
{
    return object->metaObject()->className() + QStringLiteral(" ") + object->objectName();
}

void CheckUsable(const QWidget *widget)
{
    if (!widget->isVisible())
        Fail(NameOf(widget) + " is not visible");
    if (!widget->isEnabled())
        Fail(NameOf(widget) + " is not enabled");
}

// The cells of a view are painted, and clicks land, on a widget inside it.
QWidget *Target(QWidget *widget)
{
    auto *area = qobject_cast<QAbstractScrollArea *>(widget);
    return area ? area->viewport() : widget;
}

QString Plain(QString caption)
{
    caption.replace("&&", QStringLiteral("\x01")).remove('&');
    return caption.replace('\x01', '&').section('\t', 0, 0);
}

} // namespace

void TGuiTools::FailFind(const QObject *root, const QString &name, const char *className)
{
    if (!root)
        Fail("Nothing to look for " + name + " in");
    QStringList names;
    for (const QObject *object : root->findChildren<QObject *>())
        if (object->inherits(className) && !object->objectName().isEmpty() &&
            !object->objectName().startsWith("qt_"))
            names << object->objectName();
    names.sort();
    Fail(QStringLiteral("No %1 \"%2\" in %3; there are: %4")
             .arg(QString::fromLatin1(className), name, NameOf(root), names.join(", ")));
}

void TGuiTools::Click(QWidget *widget, Qt::KeyboardModifiers modifiers)
{
    CheckUsable(widget);
    QTest::mouseClick(Target(widget), Qt::LeftButton, modifiers);
}

void TGuiTools::Click(QWidget *root, const QString &name)
{
    Click(Find<QWidget>(root, name));
}

void TGuiTools::ClickHeader(const QHeaderView *header, int section)
{
    const QPoint middle(header->sectionViewportPosition(section) + header->sectionSize(section) / 2,
                        header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, middle);
}

void TGuiTools::Drag(QWidget *widget, const QPoint &from, const QPoint &to)
{
    QTest::mousePress(widget, Qt::LeftButton, {}, from);
    for (const QPoint &place : {(from + to) / 2, to}) {
        QMouseEvent move(QEvent::MouseMove, place, widget->mapToGlobal(place), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(widget, &move);
    }
    QTest::mouseRelease(widget, Qt::LeftButton, {}, to);
}

void TGuiTools::Type(QWidget *widget, const QString &text)
{
    CheckUsable(widget);
    widget->setFocus();
    QTest::keyClicks(widget, text);
}

void TGuiTools::Press(QWidget *widget, int key, Qt::KeyboardModifiers modifiers)
{
    CheckUsable(widget);
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key(key), modifiers);
}

void TGuiTools::Retype(QWidget *widget, const QString &text)
{
    Press(widget, Qt::Key_A, Qt::ControlModifier);
    if (text.isEmpty())
        Press(widget, Qt::Key_Delete);
    else
        Type(widget, text);
}

void TGuiTools::Choose(QAbstractItemView *list, const QString &text)
{
    const qsizetype row = Column(*list->model(), 0).indexOf(text);
    if (row < 0)
        Fail("No row \"" + text + "\"; there are: " + Column(*list->model(), 0).join(", "));
    list->setCurrentIndex(list->model()->index(int(row), 0));
}

QStringList TGuiTools::Rows(const QAbstractItemModel &model)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells += model.index(row, column).data().toString();
        rows += cells.join('|');
    }
    return rows;
}

QStringList TGuiTools::Column(const QAbstractItemModel &model, int column)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts += model.index(row, column).data().toString();
    return texts;
}

void TGuiTools::Trigger(const QObject *root, const QString &name)
{
    auto *action = Find<QAction>(root, name);
    if (!action->isEnabled())
        Fail("The action " + name + " is not enabled");
    action->trigger();
}

QAction &TGuiTools::NeedEntry(const QMenu *menu, const QString &caption)
{
    QStringList captions;
    for (QAction *action : menu->actions()) {
        captions << Plain(action->text());
        if (captions.last() == caption && action->isEnabled())
            return *action;
    }
    Fail("No entry \"" + caption + "\" that is enabled; there are: " + captions.join(", "));
}

void TGuiTools::TriggerEntry(const QMenu *menu, const QString &caption)
{
    NeedEntry(menu, caption).trigger();
}

void TGuiTools::AskMenu(QWidget *widget, const QPoint &place)
{
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, widget->mapToGlobal(place));
    QApplication::sendEvent(widget, &event);
}

void TGuiTools::Show(QWidget *window)
{
    window->show();
    window->activateWindow();
    if (!QTest::qWaitForWindowActive(window))
        Fail(NameOf(window) + " does not become active");
}
