#include "shell/uAppStart.h"

#include "app/uAppConfig.h"
#include "app/uAppPathUtils.h"
#include "app/uHttpUtils.h"
#include "jobs/uAppWorkers.h"
#include "jobs/uWorkerThreads.h"
#include "shell/uAppUtils.h"
#include "shell/uGuard.h"
#include "support/uMainThread.h"
#include "widgets/uIcons.h"
#include "widgets/uLayoutStore.h"
#include "widgets/uStyle.h"

#include <QApplication>

namespace {

class TConfigLayoutBackend : public TLayoutBackend
{
public:
    QByteArray Read(const QString &key) override { return TAppConfig::ReadLayout(key).toLatin1(); }
    void Write(const QString &key, const QByteArray &value) override
    {
        TAppConfig::WriteLayout(key, QString::fromLatin1(value));
    }
};

} // namespace

void TAppStart::Prepare()
{
    QApplication::setApplicationName("korvane");
    QApplication::setDesktopFileName("korvane");
    TMainThread::Initialize();
    THttpUtils::Resume();
    TIcons::SetFolder(TAppPathUtils::ImagesFolder());
    TAppStyle::Apply(*qApp);
    TGuard::Run([] { TAppPathUtils::CreateFolders(); });
    TGuard::Run([] { TAppConfig::Open(); });
    TLayoutStore::Install(std::make_unique<TConfigLayoutBackend>());
    TAppWorkers::Instance().SetOwner([] {
        QWidget *modal = QApplication::activeModalWidget();
        return modal ? modal : TAppUtils::Instance().MainWindow();
    });
}

void TAppStart::Finish()
{
    THttpUtils::Abort();
    TThreadUtils::WaitForAll();
    TGuard::Run([] { TAppConfig::Close(); });
}
