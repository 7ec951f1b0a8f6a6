#pragma once

#include <QMenu>

/// The context menu of a control, emptied to be filled anew. It lives as long as the control:
/// assistive technology knows an action by the first menu it stood in, and of a menu that is made
/// for each click it would see the entries once only.
inline QMenu &KeptMenu(QWidget &owner, const QString &name)
{
    auto *menu = owner.findChild<QMenu *>(name, Qt::FindDirectChildrenOnly);
    if (!menu) {
        menu = new QMenu(&owner);
        menu->setObjectName(name);
    }
    menu->clear();
    return *menu;
}
