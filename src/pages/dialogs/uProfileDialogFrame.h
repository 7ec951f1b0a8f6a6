#pragma once

#include "app/uAppProfiles.h"
#include "shell/uDialogFrame.h"

class QAction;
class TVerticalGrid;
class TVerticalRow;

/// Edits one stored connection profile.
class TProfileDialogFrame : public TDialogFrame
{
    Q_OBJECT
public:
    explicit TProfileDialogFrame(QWidget *owner);
    ~TProfileDialogFrame() override;

    void InitializeCreate();
    void InitializeUpdate(const TAppProfile &profile);
    /// A new profile with what the rows hold. Raises EConvertError when a row holds no value.
    TAppProfile CreateProfile();

protected:
    void DoCreate() override;
    void DoGetTitle(QString &title) const override;
    void DoGetOkButtonTitle(QString &title) const override;
    /// Takes what is being typed; a row without a value keeps the dialog open.
    void DoProcess() override { CreateProfile(); }

private:
    struct TValues;
    class TRows;

    void LoadRows(const TAppProfile &profile);
    void TestConnection();
    void SelectDatabase();
    void ImportPrivateKey();
    void ClearPrivateKey();
    void ShowPrivateKey();

    bool FIsCreate = true;
    QString FId;
    QByteArray FPrivateKey;
    TVerticalGrid *vgProfile = nullptr;
    QAction *actTestConnection = nullptr;
    std::unique_ptr<TRows> FRows;
};
