#include "shell/uMainDataModule.h"

#include "app/uAppPathUtils.h"
#include "app/uAppWebUtils.h"
#include "core/uDbmErrorNames.h"
#include "shell/uAppUtils.h"
#include "shell/uGuard.h"
#include "shell/uManagerFrame.h"
#include "shell/uVersion.h"
#include "support/uException.h"

#include <QScreen>
#include <cstdlib>
#include <execinfo.h>

namespace {

QString CallStack()
{
    constexpr int Deepest = 64;
    void *frames[Deepest];
    const int count = backtrace(frames, Deepest);
    char **names = backtrace_symbols(frames, count);
    QStringList lines;
    for (int i = 0; names && i < count; ++i)
        lines += QString::fromLocal8Bit(names[i]);
    std::free(names);
    return lines.join('\n');
}

// The connection that the user is on tells which server the failure may hang on.
void ReportException(const std::exception &e)
{
    QString version;
    bool isTunnelling = false;
    if (TManagerFrame *frame = TAppUtils::Instance().GetActiveManager()) {
        version = frame->ServerVersion();
        isTunnelling = frame->IsTunnelling();
    }
    TAppWebUtils::PostExceptionLog(AppVersion, version, isTunnelling, ExceptionMessage(e),
                                   CallStack());
}

} // namespace

TMainDataModule::TMainDataModule()
{
    TGuard::SetReporter(&ReportException);
    TGuard::Run([] {
        TAppExecuteCounter::Increment();
        const QSize screen =
            QGuiApplication::primaryScreen() ? QGuiApplication::primaryScreen()->size() : QSize();
        TAppWebUtils::PostUserStatistics(AppVersion, screen.width(), screen.height());
    });
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
