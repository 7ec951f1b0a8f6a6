#include "shell/uMainForm.h"

#include "app/uAppWebUtils.h"
#include "app/uCheckUpdates.h"
#include "model/uDbmManager.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppMessages.h"
#include "shell/uAppUtils.h"
#include "shell/uGuard.h"
#include "shell/uMainFormMenuUtils.h"
#include "shell/uManagerFrame.h"
#include "shell/uPageManagerFrame.h"
#include "shell/uVersion.h"
#include "widgets/uIcons.h"
#include "widgets/uLayoutStore.h"
#include "widgets/uWaitCursor.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

TMainForm::TMainForm()
{
    setObjectName("frmMain");
    setWindowTitle("Korvane");
    setWindowIcon(TIcons::Icon("app"));
    const QFontMetrics metrics(font());
    resize(QSize(metrics.averageCharWidth() * 170, metrics.height() * 48)
               .boundedTo(screen()->availableSize()));
    // A place of its own from the start: the first dialog stands over the middle of it, and comes
    // before the desktop has told where it put the window.
    move(screen()->availableGeometry().center() - rect().center());
    auto *center = new QWidget(this);
    center->setObjectName("panCenter");
    auto *column = new QVBoxLayout(center);
    column->setContentsMargins(2, 2, 2, 2);
    column->setSpacing(0);
    setCentralWidget(center);
    TAppUtils::Instance().SetMainWindow(
        {this,
         [this](std::unique_ptr<TDbmManager> manager, const QString &name, const QString &id) {
             NewConnection(std::move(manager), name, id);
         },
         [this] { CloseActiveConnection(); }, [this] { return GetActiveManagerFrame(); }});
    FMenuUtils = std::make_unique<TMainFormMenuUtils>(*this);
    qApp->installEventFilter(this);
}

TMainForm::~TMainForm()
{
    qApp->removeEventFilter(this);
    // A window that goes without having been closed has connections still.
    TearDown();
    TAppUtils::Instance().SetMainWindow({});
}

void TMainForm::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (FShown)
        return;
    FShown = true;
    TGuard::Run([this] { FirstShow(); });
}

void TMainForm::FirstShow()
{
    FIdleHandled = false;
    BuildPageManager();
    TLayoutStore::Remember(this, "main.window");
    TMessenger::Register<TRedrawUIMessage>(
        this, [this](const TRedrawUIMessage &) { FManagersPageManager->Process(); });
    FMenuUtils->UpdateStates();
    CheckUpdates();
    QTimer::singleShot(0, this, [this] { FirstIdle(); });
}

void TMainForm::CheckUpdates()
{
    lblNewVersion = new QLabel("<a href=\"#\">Get new version</a>", menuBar());
    lblNewVersion->setObjectName("lblNewVersion");
    lblNewVersion->setAccessibleName("Get new version");
    lblNewVersion->setContentsMargins(8, 0, 8, 0);
    menuBar()->setCornerWidget(lblNewVersion);
    lblNewVersion->hide();
    connect(lblNewVersion, &QLabel::linkActivated, this, [] { TAppUtils::Instance().HomePage(); });
    FCheckUpdates =
        std::make_unique<TCheckUpdates>(AppVersion, TAppWebUtils::Address("/check-updates"));
    FCheckUpdates->SetOnAfterExecute([this](TCheckUpdates *, const TCheckUpdatesResult &result) {
        lblNewVersion->setVisible(result.Status);
        lblNewVersion->setToolTip(result.Version);
    });
    FCheckUpdates->Execute();
}

void TMainForm::BuildPageManager()
{
    FManagersPageManager = TBaseFrame::New<TPageManagerFrame>(centralWidget(), 0);
    FManagersPageManager->setObjectName("managersPageManager");
    FManagersPageManager->SetShowWhenEmpty(true);
    FManagersPageManager->SetCloseButtons(false);
    FManagersPageManager->SetNewButtonVisible(true, "New Connection...");
    FManagersPageManager->MoveTo(centralWidget());
    connect(FManagersPageManager, &TPageManagerFrame::OnChange, this,
            [this] { TGuard::Run([this] { ConnectionsChanged(); }); });
    connect(FManagersPageManager, &TPageManagerFrame::OnNewButtonClick, this,
            [] { TGuard::Run([] { TAppUtils::Instance().OpenConnection(); }); });
}

// The program always comes back to the profiles dialog, unless the window is closing.
void TMainForm::ConnectionsChanged()
{
    FMenuUtils->UpdateStates();
    if (FManagersPageManager->PageCount() > 0 || FCloseExecuted)
        return;
    QTimer::singleShot(0, this, [this] {
        if (FManagersPageManager->PageCount() == 0 && !FCloseExecuted)
            TGuard::Run([] { TAppUtils::Instance().OpenConnection(); });
    });
}

void TMainForm::FirstIdle()
{
    if (FIdleHandled)
        return;
    FIdleHandled = true;
    TGuard::Run([] { TAppUtils::Instance().OpenConnection(); });
}

void TMainForm::NewConnection(std::unique_ptr<TDbmManager> manager, const QString &profileName,
                              const QString &profileId)
{
    FManagersPageManager->AddPage(
        {},
        [&](QWidget *owner) {
            auto *frame = TBaseFrame::New<TManagerFrame>(owner);
            frame->Initialize(std::move(manager), profileName, profileId);
            connect(frame, &TManagerFrame::OnCommandBeforeExecute, this,
                    [] { TWaitCursor::Show(); });
            return frame;
        },
        QIcon(), true);
}

void TMainForm::CloseActiveConnection()
{
    FManagersPageManager->CloseActivePage();
}

void TMainForm::CloseAllConnections()
{
    FManagersPageManager->CloseAllPages();
}

TManagerFrame *TMainForm::GetActiveManagerFrame() const
{
    return FManagersPageManager ? static_cast<TManagerFrame *>(FManagersPageManager->ActivePage())
                                : nullptr;
}

void TMainForm::closeEvent(QCloseEvent *event)
{
    if (FManagersPageManager && !FManagersPageManager->CloseQuery()) {
        event->ignore();
        return;
    }
    TearDown();
    QMainWindow::closeEvent(event);
}

// The last tab to go must not bring the profiles dialog up.
void TMainForm::TearDown()
{
    FCloseExecuted = true;
    TGuard::Run([this] {
        if (FManagersPageManager)
            FManagersPageManager->PrepareDestroy();
    });
    FCheckUpdates.reset();
    TMessenger::Unregister(this);
}

// Ahead of all controls, so that an editor does not take these keys for itself.
bool TMainForm::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && QApplication::activeWindow() == this &&
        !QApplication::activePopupWidget()) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (HandleGlobalKey(key->key(), key->modifiers()))
            return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

bool TMainForm::HandleGlobalKey(int key, Qt::KeyboardModifiers modifiers)
{
    const bool control = modifiers & Qt::ControlModifier;
    const bool shift = modifiers & Qt::ShiftModifier;
    if (key == Qt::Key_F5 && !control && !shift) {
        FMenuUtils->TriggerQueryExecute();
        return true;
    }
    TManagerFrame *manager = GetActiveManagerFrame();
    // With Shift the platform names the key Backtab.
    if (!control || !manager || !manager->IsLoaded() ||
        (key != Qt::Key_Tab && key != Qt::Key_Backtab))
        return false;
    TGuard::Run([=] {
        if (shift || key == Qt::Key_Backtab)
            manager->PageUtils().SelectPrevPage();
        else
            manager->PageUtils().SelectNextPage();
    });
    return true;
}
