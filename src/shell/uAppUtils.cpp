#include "shell/uAppUtils.h"

#include "model/uDbmManager.h"
#include "shell/uAppDialogs.h"
#include "shell/uManagerFrame.h"

#include <QDesktopServices>
#include <QUrl>
#include <QWidget>

namespace {

const char HomePageAddress[] = "https://korvane.example/";

} // namespace

TAppUtils &TAppUtils::Instance()
{
    static TAppUtils instance;
    return instance;
}

void TAppUtils::Exit()
{
    if (FMainWindow.Window)
        FMainWindow.Window->close();
}

void TAppUtils::OpenConnection()
{
    std::unique_ptr<TDbmManager> manager;
    QString profileName;
    QString profileId;
    if (TAppDialogs::OpenManagerFromProfiles(manager, profileName, profileId))
        FMainWindow.NewConnection(std::move(manager), profileName, profileId);
}

void TAppUtils::CloseConnection()
{
    if (FMainWindow.CloseActiveConnection)
        FMainWindow.CloseActiveConnection();
}

bool TAppUtils::IsConnectionOpened() const
{
    return GetActiveManager() != nullptr;
}

void TAppUtils::Refresh()
{
    if (TManagerFrame *manager = GetActiveManager())
        manager->RefreshManager();
}

void TAppUtils::CloseActivePage()
{
    if (TManagerFrame *manager = GetActiveManager())
        manager->CloseActivePage();
}

void TAppUtils::CloseAllPages()
{
    if (TManagerFrame *manager = GetActiveManager())
        manager->CloseAllPages();
}

void TAppUtils::ReopenClosedQuery()
{
    if (TManagerFrame *manager = GetActiveManager())
        manager->ReopenClosedQuery();
}

int TAppUtils::GetActivePage() const
{
    const TManagerFrame *manager = GetActiveManager();
    return manager ? manager->GetActivePageIndex() : -1;
}

void TAppUtils::SetActivePage(int index)
{
    if (TManagerFrame *manager = GetActiveManager())
        manager->SetActivePageIndex(index);
}

QStringList TAppUtils::GetPagesCaption() const
{
    const TManagerFrame *manager = GetActiveManager();
    return manager ? manager->GetPagesCaption() : QStringList();
}

void TAppUtils::HomePage()
{
    QDesktopServices::openUrl(QUrl(HomePageAddress));
}

void TAppUtils::About()
{
    TAppDialogs::About();
}

TManagerFrame *TAppUtils::GetActiveManager() const
{
    return FMainWindow.GetActiveManagerFrame ? FMainWindow.GetActiveManagerFrame() : nullptr;
}
