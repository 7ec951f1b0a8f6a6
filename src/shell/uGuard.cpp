#include "shell/uGuard.h"

#include "core/uDacMySqlError.h"
#include "shell/uAppUtils.h"
#include "support/uException.h"
#include "widgets/uErrorBox.h"
#include "widgets/uWaitCursor.h"

#include <QApplication>

namespace {

TGuard::TReporter &Reporter()
{
    static TGuard::TReporter reporter;
    return reporter;
}

QString DetailsOf(const std::exception &e)
{
    const auto *error = dynamic_cast<const EDacMySqlError *>(&e);
    return error ? error->CommandText() : QString();
}

QWidget *BoxOwner()
{
    QWidget *modal = QApplication::activeModalWidget();
    return modal ? modal : TAppUtils::Instance().MainWindow();
}

} // namespace

bool TGuard::Run(const std::function<void()> &action)
{
    try {
        action();
        return true;
    } catch (const std::exception &e) {
        Handle(e);
    } catch (...) {
        Handle(EException("Unknown exception."));
    }
    return false;
}

void TGuard::Handle(const std::exception &e)
{
    if (Reporter())
        Reporter()(e);
    TWaitCursor::Hide();
    TErrorBox::Execute(BoxOwner(), ExceptionMessage(e), DetailsOf(e));
}

void TGuard::SetReporter(TReporter reporter)
{
    Reporter() = std::move(reporter);
}
