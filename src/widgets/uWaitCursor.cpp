#include "widgets/uWaitCursor.h"

#include <QCursor>
#include <QGuiApplication>
#include <QTimer>

namespace {

bool ShownByUs = false;

}

void TWaitCursor::Show()
{
    if (ShownByUs || !qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return;
    ShownByUs = true;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    // A timer of no time fires when the run loop has nothing else left to do.
    QTimer::singleShot(0, qGuiApp, [] { Hide(); });
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
