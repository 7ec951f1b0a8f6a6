#include "shell/uManagerFrame.h"

#include "app/uAppPathUtils.h"
#include "app/uAppSession.h"
#include "app/uAppWebUtils.h"
#include "model/uDbmManager.h"
#include "pages/query/uQueryPageFrame.h"
#include "pages/tree/uManagerObjectsFrame.h"
#include "shell/uAppCodeCompleteUtils.h"
#include "shell/uAppDialogs.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppManagerSessionUtils.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uAppMessages.h"
#include "shell/uGuard.h"
#include "shell/uManagerJournal.h"
#include "shell/uPageManagerFrame.h"
#include "shell/uVersion.h"
#include "support/uException.h"
#include "support/uStringUtils.h"
#include "widgets/uLayoutStore.h"

#include <QLabel>
#include <QScopedValueRollback>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

constexpr int MaxToolTip = 1000; // characters of a statement

} // namespace

TManagerFrame::TManagerFrame(QWidget *owner) : TPageFrame(owner) {}

TManagerFrame::~TManagerFrame() = default;

void TManagerFrame::Initialize(std::unique_ptr<TDbmManager> manager, const QString &profileName,
                               const QString &sessionId)
{
    FManager = std::move(manager);
    FProfileName = profileName;
    FSessionId = sessionId;
    HookManager();
}

QString TManagerFrame::DoGetTitle() const
{
    return FProfileName.isEmpty() ? FManager->ConnectionProfile().GetDisplayString() : FProfileName;
}

void TManagerFrame::DoCreate()
{
    TPageFrame::DoCreate();
    BuildLayout();
}

void TManagerFrame::BuildLayout()
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    splMain = new QSplitter(Qt::Horizontal, this);
    splMain->setObjectName("splMain");
    panPanels = new QTabWidget(splMain);
    panPanels->setObjectName("panPanels");
    panPanels->setDocumentMode(true);
    panPanels->setTabBarAutoHide(true);
    panPages = new QWidget(splMain);
    panPages->setObjectName("panPages");
    labHint = new QLabel("Ctrl+N opens a new query, Ctrl+O a query file.", panPages);
    labHint->setObjectName("labHint");
    labHint->setAlignment(Qt::AlignCenter);
    labHint->setWordWrap(true);
    labHint->setForegroundRole(QPalette::PlaceholderText);
    (new QVBoxLayout(panPages))->setContentsMargins(0, 0, 0, 0);
    panPages->layout()->addWidget(labHint);
    splMain->setStretchFactor(1, 1);
    splMain->setSizes({fontMetrics().averageCharWidth() * 42, width()});
    column->addWidget(splMain, 1);

    auto *statusBar = new QStatusBar(this);
    statusBar->setObjectName("statusBar");
    statusBar->setSizeGripEnabled(false);
    labProfile = new QLabel(statusBar);
    labProfile->setObjectName("labProfile");
    labServerVersion = new QLabel(statusBar);
    labServerVersion->setObjectName("labServerVersion");
    for (QLabel *label : {labProfile, labServerVersion}) {
        label->setTextFormat(Qt::PlainText);
        statusBar->addWidget(label);
    }
    labNotRead = new QLabel(statusBar);
    labNotRead->setObjectName("labNotRead");
    labNotRead->setTextFormat(Qt::PlainText);
    labNotRead->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    statusBar->addWidget(labNotRead, 1);
    column->addWidget(statusBar);
}

void TManagerFrame::DoLoad()
{
    FPageManagerFrame = New<TPageManagerFrame>(panPages, 0);
    FPageManagerFrame->setObjectName("pageManager");
    FPageManagerFrame->MoveTo(panPages);
    connect(FPageManagerFrame, &TPageManagerFrame::OnChange, this, [this] {
        UpdateHint();
        TAppMessages::SendManagerPagesChange();
    });
    FPageUtils = std::make_unique<TAppManagerPageUtils>(FManager.get(), FPageManagerFrame);
    FUtils = std::make_unique<TAppManagerUtils>(FManager.get(), FPageUtils.get());
    FPageUtils->SetOnSqlEditor([this](TTextEditor *editor, std::function<QString()> usedDatabase) {
        FUtils->CodeComplete().CreateSynEditCodeCompleteManager(editor, std::move(usedDatabase));
    });
    FPageUtils->SetOnDropText([this](const QString &text) { return KeepText(text); });
    LoadPanels();
    // As the session told it that the workspace was given: one that was lost meanwhile is opened by
    // what reads first, which says so if it cannot.
    FServerVersion = FManager->Provider().Connection().ServerVersion();
    TAppWebUtils::PostSessionStatistics(FServerVersion, IsTunnelling());
    TLayoutStore::Remember(splMain, "workspace.splitter");
    FillStatusBar();
    UpdateHint();
    TGuard::Run([this] { OpenSession(); });
}

void TManagerFrame::LoadPanels()
{
    TMessenger::Register<TTableRenamedMessage>(this, [this](const TTableRenamedMessage &message) {
        if (message.Manager == FManager.get())
            FPageUtils->RenameTable(message.DatabaseName, message.TableName, message.NewTableName);
    });
    TMessenger::Register<TTableDeletedMessage>(this, [this](const TTableDeletedMessage &message) {
        if (message.Manager == FManager.get())
            FPageUtils->CloseTable(message.DatabaseName, message.TableName);
    });
    auto *page = new QWidget(panPanels);
    FObjectsFrame = New<TManagerObjectsFrame>(page);
    FObjectsFrame->MoveTo(page);
    FObjectsFrame->Initialize(FManager.get(), FUtils.get(), FPageUtils.get());
    panPanels->addTab(page, "Objects");
}

// A profile that was never stored has no session.
void TManagerFrame::OpenSession()
{
    if (FSessionId.isEmpty())
        return;
    auto session = std::make_unique<TAppSession>();
    session->Open(TAppPathUtils::SessionsFolder(), FSessionId);
    FSession = std::move(session);
    FSessionUtils = std::make_unique<TAppManagerSessionUtils>(FSession.get(), FPageManagerFrame,
                                                              FPageUtils.get());
    FJournal = std::make_unique<TManagerJournal>(
        FSession.get(), FPageManagerFrame, FPageUtils.get(),
        [this] {
            FObjectsFrame->WriteSession(*FSession);
            return FSessionUtils->TakePages();
        },
        [this] { return FObjectsFrame->SelectedDatabase(); });
    FObjectsFrame->ReadSession(*FSession);
    FSessionUtils->Read();
    FJournal->Start();
    if (!FSession->DamagedFile().isEmpty())
        throw EException("What was kept of this workspace could not be read. The damaged file is "
                         "kept as \"" +
                         FSession->DamagedFile() + "\".");
}

void TManagerFrame::WriteSession()
{
    FObjectsFrame->WriteSession(*FSession);
    FSessionUtils->Write();
}

// A page that goes alone leaves its text in the recovery folder. Where that cannot be, also
// because there is no session, the user decides.
TTextDrop TManagerFrame::KeepText(const QString &text)
{
    if (FIsClosing)
        return tdBySession;
    if (text.trimmed().isEmpty() ||
        (FSession && TGuard::Run([&] { FSession->Recovery().Store(text); })))
        return tdSettled;
    return TAppDialogs::Execute("The text of this query is kept nowhere. Close it all the same?",
                                [] {})
               ? tdSettled
               : tdRefused;
}

bool TManagerFrame::HasUnsavedTexts() const
{
    for (int i = 0; i < FPageManagerFrame->PageCount(); ++i) {
        const auto *page = qobject_cast<TQueryPageFrame *>(FPageManagerFrame->GetPageByIndex(i));
        if (page && page->IsUnsaved() && !page->GetText().trimmed().isEmpty())
            return true;
    }
    return false;
}

// Ahead of the pages, so that the user can still turn back when the disk refuses.
bool TManagerFrame::SaveSession()
{
    const bool saved = FSession ? TGuard::Run([this] { FJournal->Write(); }) : !HasUnsavedTexts();
    return saved ||
           TAppDialogs::Execute(
               "The queries of this workspace are not saved. Close it all the same?", [] {});
}

void TManagerFrame::CloseSession()
{
    if (!FSession)
        return;
    FJournal->Stop();
    TGuard::Run([this] {
        WriteSession();
        FSession->Close();
    });
}

bool TManagerFrame::IsTunnelling() const
{
    return FManager->ConnectionProfile().ConnectionType == ctSSHTunnel;
}

void TManagerFrame::HookManager()
{
    FManager->SetOnCommandBeforeExecute([this](TDbmManager *, const QString &commandText) {
        Q_EMIT OnCommandBeforeExecute(commandText);
    });
    // A list that cannot be read is empty, without a box in the user's way; but it must be seen
    // that it is not the server that has nothing.
    FManager->Commands().SetOnCommandNotExecuted(
        [this](TDbmChildCommands *, const QString &message, const QString &command) {
            labNotRead->setText("Not read: " + TStringUtils::Compact(message));
            labNotRead->setToolTip(message + "\n---\n" + command.left(MaxToolTip));
            TAppWebUtils::PostNotExecutedCommandLog(AppVersion, FServerVersion, IsTunnelling(),
                                                    message, command);
        });
}

void TManagerFrame::FillStatusBar()
{
    constexpr int Room = 16; // pixels beside the text of a panel
    labProfile->setText(FManager->ConnectionProfile().GetDisplayString());
    labServerVersion->setText(FServerVersion);
    for (QLabel *label : {labProfile, labServerVersion})
        label->setMinimumWidth(label->fontMetrics().horizontalAdvance(label->text()) + Room);
}

void TManagerFrame::UpdateHint()
{
    labHint->setVisible(FPageManagerFrame->PageCount() == 0);
}

void TManagerFrame::DoProcess()
{
    // A server that does not tell its objects must not keep the pages from being drawn.
    TGuard::Run([this] { FObjectsFrame->Process(); });
    FPageManagerFrame->Process();
}

bool TManagerFrame::DoCloseQuery()
{
    if (!FPageManagerFrame)
        return true;
    // Only while the pages are asked: another workspace of the window may still refuse, and then
    // this one stays open too.
    const QScopedValueRollback closing(FIsClosing, true);
    return FPageManagerFrame->CloseQuery() && SaveSession();
}

void TManagerFrame::DoUnload()
{
    TMessenger::Unregister(this);
    FIsClosing = true;
    CloseSession();
    FObjectsFrame->PrepareDestroy();
    FPageManagerFrame->PrepareDestroy();
    FPageManagerFrame->disconnect(this);
    FJournal.reset();
    FSessionUtils.reset();
    FSession.reset();
    FUtils.reset();
    FPageUtils.reset();
    // Pages are gone by now, and with them every dataset of this connection.
    FManager.reset();
}

void TManagerFrame::ForgetNotRead()
{
    labNotRead->clear();
    labNotRead->setToolTip({});
}

void TManagerFrame::RefreshManager()
{
    ForgetNotRead();
    FManager->RequestProcess();
    RequestProcess();
    Process();
}

QStringList TManagerFrame::GetPagesCaption() const
{
    return FPageManagerFrame ? FPageManagerFrame->GetPagesCaption() : QStringList();
}

int TManagerFrame::GetActivePageIndex() const
{
    return FPageManagerFrame ? FPageManagerFrame->ActivePageIndex() : -1;
}

void TManagerFrame::SetActivePageIndex(int value)
{
    FPageManagerFrame->SetActivePageIndex(value);
}

void TManagerFrame::CloseActivePage()
{
    FPageManagerFrame->CloseActivePage();
}

void TManagerFrame::CloseAllPages()
{
    FPageManagerFrame->CloseAllPages();
}

bool TManagerFrame::HasClosedQueries() const
{
    return FJournal && FJournal->HasClosedQueries();
}

void TManagerFrame::ReopenClosedQuery()
{
    if (FJournal)
        FJournal->ReopenClosedQuery();
}
