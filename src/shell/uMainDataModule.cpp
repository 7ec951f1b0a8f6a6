#include "shell/uMainDataModule.h"

#include "app/uAppPathUtils.h"
#include "core/uDbmErrorNames.h"
#include "shell/uGuard.h"
#include "support/uException.h"

TMainDataModule::TMainDataModule()
{
    TGuard::Run([] { TDbmErrorCodeParser::Initialize(TAppPathUtils::ErrorNamesFile()); });
}

bool TApplication::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception &e) {
        TGuard::Handle(e);
    } catch (...) {
        TGuard::Handle(EException("Unknown exception."));
    }
    return false;
}
