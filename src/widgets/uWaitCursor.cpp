#include "widgets/uWaitCursor.h"

#include <QCursor>
#include <QGuiApplication>

namespace {

bool ShownByUs = false;

}

void TWaitCursor::Show()
{
    if (ShownByUs || !qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return;
    ShownByUs = true;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

void TWaitCursor::Hide()
{
    if (!ShownByUs)
        return;
    ShownByUs = false;
    // An application that was ended meanwhile took its cursors along.
    if (QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
}

bool TWaitCursor::IsShown()
{
    return ShownByUs;
}
