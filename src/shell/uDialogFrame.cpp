#include "shell/uDialogFrame.h"

QString TDialogFrame::GetTitle() const
{
    QString title;
    DoGetTitle(title);
    return title;
}

QString TDialogFrame::GetOkButtonTitle() const
{
    QString title;
    DoGetOkButtonTitle(title);
    return title;
}
