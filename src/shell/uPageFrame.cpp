#include "shell/uPageFrame.h"

TPageFrame::TPageFrame(QWidget *owner) : TBaseFrame(owner) {}

void TPageFrame::Process()
{
    if (!FIsLoaded) {
        FIsLoaded = true;
        DoLoad();
    }
    if (!FIsDrawn) {
        FIsDrawn = true;
        DoProcess();
    }
}

void TPageFrame::DoDestroy()
{
    if (!FIsLoaded)
        return;
    FIsLoaded = false;
    DoUnload();
}
