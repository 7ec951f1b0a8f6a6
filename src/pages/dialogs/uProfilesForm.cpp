#include "pages/dialogs/uProfilesForm.h"

#include "app/uAppConfig.h"
#include "jobs/uAppWorkers.h"
#include "model/uDbmManager.h"
#include "shell/uAppDialogs.h"
#include "shell/uGuard.h"
#include "widgets/uIcons.h"
#include "widgets/uLayoutStore.h"
#include "widgets/uToolBar.h"
#include "widgets/uVTDataManager.h"
#include "widgets/uWaitCursor.h"

#include <QAction>
#include <QFrame>
#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// Under this key the profile that was opened last is focused the next time.
const char LastProfileKey[] = "profiles.last";

} // namespace

bool TProfilesForm::ShowAsOpenManager(QWidget *owner, std::unique_ptr<TDbmManager> &manager,
                                      QString &profileName, QString &profileId)
{
    TProfilesForm form(owner, pfmOpenManager);
    if (form.exec() != QDialog::Accepted)
        return false;
    manager = std::move(form.FManager);
    profileName = form.FProfile.Alias;
    profileId = form.FProfile.Id;
    return true;
}

bool TProfilesForm::ShowAsOpenProfile(QWidget *owner, TAppProfile &profile)
{
    TProfilesForm form(owner, pfmOpenProfile);
    if (form.exec() != QDialog::Accepted)
        return false;
    profile = form.FProfile;
    return true;
}

TProfilesForm::TProfilesForm(QWidget *owner, TMode mode)
    : QDialog(owner), FMode(mode), FProfiles(std::make_unique<TAppProfiles>())
{
    setObjectName("frmProfiles");
    setWindowTitle("Profiles");
    setModal(true);
    BuildControls();
    ConnectList();
    const QFontMetrics metrics(font());
    resize(metrics.averageCharWidth() * 64, metrics.height() * 24);
    TLayoutStore::Remember(this, "profiles.window");
}

TProfilesForm::~TProfilesForm() = default;

void TProfilesForm::BuildControls()
{
    actOpen = MakeAction("actOpen", "Connect", {}, "connect", &TProfilesForm::Open);
    actCreate = MakeAction("actCreate", "Create", "New profile", "profile-new",
                           &TProfilesForm::CreateProfile);
    actUpdate = MakeAction("actUpdate", "Edit", "Edit profile", "profile-edit",
                           &TProfilesForm::UpdateProfile);
    actDelete = MakeAction("actDelete", "Delete", "Delete profile", "profile-delete",
                           &TProfilesForm::DeleteProfile);

    auto *column = new QVBoxLayout(this);
    auto *toolBar = new TToolBar(this, "tbrProfiles");
    lvProfiles = new TVTTreeView(this, "lvProfiles");
    lvProfiles->setAccessibleName("Profiles");
    lvProfiles->setRootIsDecorated(false);
    auto *menu = new QMenu(this);
    menu->setObjectName("FpmList");
    for (QAction *action : {actOpen, actCreate, actUpdate, actDelete}) {
        toolBar->addAction(action);
        menu->addAction(action);
    }
    Fvtdm = new TVTDataManager(lvProfiles, this);
    Fvtdm->SetImages({TIcons::Icon("profile")});
    Fvtdm->SetPopupMenu(menu);
    column->addWidget(toolBar);
    column->addWidget(lvProfiles, 1);

    auto *row = new QHBoxLayout;
    row->addStretch(1);
    butOpen = new QPushButton(FMode == pfmOpenManager ? "Connect" : "Select", this);
    butOpen->setObjectName("butOpen");
    butOpen->setDefault(true);
    auto *butClose = new QPushButton("Close", this);
    butClose->setObjectName("butClose");
    butClose->setAutoDefault(false);
    row->addWidget(butOpen);
    row->addWidget(butClose);
    column->addLayout(row);
    connect(butOpen, &QPushButton::clicked, this, [this] { TGuard::Run([this] { Open(); }); });
    connect(butClose, &QPushButton::clicked, this, &QDialog::reject);
}

QAction *TProfilesForm::MakeAction(const char *name, const QString &caption, const QString &hint,
                                   const char *icon, void (TProfilesForm::*work)())
{
    auto *action = new QAction(TIcons::Icon(icon), caption, this);
    action->setObjectName(name);
    if (!hint.isEmpty())
        action->setToolTip(hint);
    connect(action, &QAction::triggered, this,
            [this, work] { TGuard::Run([this, work] { (this->*work)(); }); });
    return action;
}

void TProfilesForm::ConnectList()
{
    connect(Fvtdm, &TVTDataManager::OnFocusChanged, this, &TProfilesForm::UpdateActions);
    connect(Fvtdm, &TVTDataManager::OnDoubleClick, actOpen, &QAction::trigger);
    connect(Fvtdm, &TVTDataManager::OnEnterKey, actOpen, &QAction::trigger);
    connect(Fvtdm, &TVTDataManager::OnInsertKey, actCreate, &QAction::trigger);
    connect(Fvtdm, &TVTDataManager::OnDeleteKey, actDelete, &QAction::trigger);
}

void TProfilesForm::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (FShown)
        return;
    FShown = true;
    if (TGuard::Run([this] { FProfiles->Read(); }))
        FProfiles->GiveMissingId();
    FillList();
    FocusProfile(TAppConfig::ReadLayout(LastProfileKey));
    lvProfiles->setFocus();
}

// A change to the list is stored whether or not a connection was made.
void TProfilesForm::done(int result)
{
    const bool closes =
        TGuard::Run([this] { FProfiles->Write(); }) || !FProfiles->IsChanged() ||
        TAppDialogs::Execute("The changed profiles are not saved. Close the window all the same?",
                             [] {});
    if (closes)
        QDialog::done(result);
}

void TProfilesForm::FillList()
{
    {
        const TVTDataUpdate update(Fvtdm);
        for (const TAppProfilePtr &profile : FProfiles->GetArray())
            Fvtdm->DataList()->Add(profile->Id, profile.get(), {0}, {profile->GetDisplayString()});
    }
    UpdateActions();
}

void TProfilesForm::FocusProfile(const QString &id)
{
    TVTDataItem *item = id.isEmpty() ? nullptr : Fvtdm->FindNode(id);
    if (!item && Fvtdm->DataList()->Count() > 0)
        item = Fvtdm->DataList()->Items(0);
    Fvtdm->SetFocusedItem(item);
}

TAppProfile *TProfilesForm::FocusedProfile() const
{
    const TVTDataItem *item = Fvtdm->FocusedItem();
    return item ? static_cast<TAppProfile *>(item->Data()) : nullptr;
}

void TProfilesForm::UpdateActions()
{
    const bool focused = FocusedProfile() != nullptr;
    for (QAction *action : {actOpen, actUpdate, actDelete})
        action->setEnabled(focused);
    butOpen->setEnabled(focused);
}

void TProfilesForm::Open()
{
    const TAppProfile *profile = FocusedProfile();
    if (!profile)
        return;
    FProfile = {};
    FManager.reset();
    TWaitCursor::Show();
    if (FMode == pfmOpenManager &&
        !TAppWorkers::Instance().TryOpenManager(profile->ConnectionProfile, FManager))
        return;
    FProfile = *profile;
    TAppConfig::WriteLayout(LastProfileKey, FProfile.Id);
    accept();
}

void TProfilesForm::CreateProfile()
{
    TAppProfile profile;
    if (!TAppDialogs::CreateProfile(profile))
        return;
    FProfiles->Add(profile.Clone());
    FillList();
    FocusProfile(profile.Id);
}

void TProfilesForm::UpdateProfile()
{
    const TAppProfile *profile = FocusedProfile();
    if (!profile)
        return;
    TAppProfile newProfile;
    const TAppProfilePtr old = FProfiles->Get(profile->Id);
    if (!TAppDialogs::UpdateProfile(*old, newProfile))
        return;
    FProfiles->Remove(old);
    FProfiles->Add(newProfile.Clone());
    FillList();
    FocusProfile(newProfile.Id);
}

void TProfilesForm::DeleteProfile()
{
    const TAppProfile *profile = FocusedProfile();
    if (!profile)
        return;
    const TAppProfilePtr held = FProfiles->Get(profile->Id);
    if (!TAppDialogs::Execute("Do you really want to delete this profile?",
                              [&] { FProfiles->Remove(held); }))
        return;
    FillList();
    if (!FocusedProfile())
        FocusProfile({});
}
