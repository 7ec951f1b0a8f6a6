#pragma once

#include "app/uAppProfiles.h"

#include <QDialog>
#include <memory>

class QAction;
class QPushButton;
class TDbmManager;
class TVTDataManager;
class TVTTreeView;

/// The window of the stored connections: picks one, connected or not, and edits the list.
class TProfilesForm : public QDialog
{
    Q_OBJECT
public:
    /// Gives a connected manager after OK.
    static bool ShowAsOpenManager(QWidget *owner, std::unique_ptr<TDbmManager> &manager,
                                  QString &profileName, QString &profileId);
    /// Gives the chosen profile after OK; nothing is connected.
    static bool ShowAsOpenProfile(QWidget *owner, TAppProfile &profile);

    ~TProfilesForm() override;

protected:
    void showEvent(QShowEvent *event) override;
    void done(int result) override;

private:
    enum TMode { pfmOpenManager, pfmOpenProfile };

    TProfilesForm(QWidget *owner, TMode mode);
    void BuildControls();
    QAction *MakeAction(const char *name, const QString &caption, const QString &hint,
                        const char *icon, void (TProfilesForm::*work)());
    void ConnectList();
    void FillList();
    void FocusProfile(const QString &id);
    TAppProfile *FocusedProfile() const; // nullptr without a focused row
    void UpdateActions();
    void Open();
    void CreateProfile();
    void UpdateProfile();
    void DeleteProfile();

    const TMode FMode;
    std::unique_ptr<TAppProfiles> FProfiles;
    std::unique_ptr<TDbmManager> FManager;
    TAppProfile FProfile; // the chosen one
    bool FShown = false;
    TVTTreeView *lvProfiles = nullptr;
    TVTDataManager *Fvtdm = nullptr;
    QPushButton *butOpen = nullptr;
    QAction *actOpen = nullptr;
    QAction *actCreate = nullptr;
    QAction *actUpdate = nullptr;
    QAction *actDelete = nullptr;
};
