#include "shell/uManagerFrame.h"

#include "model/uDbmManager.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uAppMessages.h"
#include "shell/uPageManagerFrame.h"
#include "widgets/uLayoutStore.h"

#include <QLabel>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>

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
    // Empty and out of sight until a panel moves in.
    panPanels = new QWidget(splMain);
    panPanels->setObjectName("panPanels");
    panPanels->hide();
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
    TLayoutStore::Remember(splMain, "workspace.splitter");
    FillStatusBar();
}

void TManagerFrame::HookManager()
{
    FManager->SetOnCommandBeforeExecute([this](TDbmManager *, const QString &commandText) {
        Q_EMIT OnCommandBeforeExecute(commandText);
    });
}

void TManagerFrame::FillStatusBar()
{
    constexpr int Room = 16; // pixels beside the text of a panel
    labProfile->setText(FManager->ConnectionProfile().GetDisplayString());
    labServerVersion->setText(FManager->ServerVersion());
    for (QLabel *label : {labProfile, labServerVersion})
        label->setMinimumWidth(label->fontMetrics().horizontalAdvance(label->text()) + Room);
}

void TManagerFrame::UpdateHint()
{
    labHint->setVisible(FPageManagerFrame->PageCount() == 0);
}

void TManagerFrame::DoProcess()
{
    FPageManagerFrame->Process();
}

bool TManagerFrame::DoCloseQuery()
{
    return FPageManagerFrame->CloseQuery();
}

void TManagerFrame::DoUnload()
{
    FPageManagerFrame->PrepareDestroy();
    FPageManagerFrame->disconnect(this);
    FUtils.reset();
    FPageUtils.reset();
    // Pages are gone by now, and with them every dataset of this connection.
    FManager.reset();
}

void TManagerFrame::RefreshManager()
{
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
