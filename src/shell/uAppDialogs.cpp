#include "shell/uAppDialogs.h"

#include "app/uAppConfig.h"
#include "app/uAppProfiles.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "model/uDbmViewList.h"
#include "pages/dialogs/uAboutForm.h"
#include "pages/dialogs/uExportCVSOptionsDialogFrame.h"
#include "pages/dialogs/uFieldSelectDialogFrame.h"
#include "pages/dialogs/uProfileDialogFrame.h"
#include "pages/dialogs/uProfilesForm.h"
#include "pages/dialogs/uSelectCharsetDialogFrame.h"
#include "pages/dialogs/uSelectDialogFrame.h"
#include "shell/uAppUtils.h"
#include "shell/uDialogForm.h"
#include "shell/uFileDialogs.h"
#include "widgets/uErrorBox.h"

#include <QApplication>
#include <QFileInfo>

// Boxes and dialogs stand on the window that asked, which may be a dialog itself.
QWidget *TAppDialogs::Owner()
{
    QWidget *modal = QApplication::activeModalWidget();
    return modal ? modal : TAppUtils::Instance().MainWindow();
}

bool TAppDialogs::Execute(const QString &question, const std::function<void()> &action)
{
    if (!TQuestionBox::Ask(Owner(), question))
        return false;
    action();
    return true;
}

bool TAppDialogs::ExecuteCommand(TDbmCommand &command, const QString &text, const QString &question)
{
    const auto run = [&] { command.ExecScript(text, {}, ";"); };
    if (!question.isEmpty())
        return Execute(question, run);
    run();
    return true;
}

bool TAppDialogs::OpenManagerFromProfiles(std::unique_ptr<TDbmManager> &manager,
                                          QString &profileName, QString &profileId)
{
    return TProfilesForm::ShowAsOpenManager(Owner(), manager, profileName, profileId);
}

bool TAppDialogs::OpenProfile(TAppProfile &profile)
{
    return TProfilesForm::ShowAsOpenProfile(Owner(), profile);
}

bool TAppDialogs::CreateProfile(TAppProfile &profile)
{
    return TDialogForm::RunFrame<TProfileDialogFrame>(
        Owner(), [](TProfileDialogFrame &frame) { frame.InitializeCreate(); },
        [&](TProfileDialogFrame &frame) { profile = frame.CreateProfile(); });
}

bool TAppDialogs::UpdateProfile(const TAppProfile &profile, TAppProfile &newProfile)
{
    return TDialogForm::RunFrame<TProfileDialogFrame>(
        Owner(), [&](TProfileDialogFrame &frame) { frame.InitializeUpdate(profile); },
        [&](TProfileDialogFrame &frame) { newProfile = frame.CreateProfile(); });
}

bool TAppDialogs::OpenSqlFile(QString &fileName)
{
    const TFileDialogs::TOptions options = {
        .Folder = TAppConfig::ReadLastQueryFolder(), .Extension = "sql", .Filter = "SQL files"};
    if (!TFileDialogs::Open(Owner(), options, fileName))
        return false;
    TAppConfig::WriteLastQueryFolder(QFileInfo(fileName).path());
    return true;
}

void TAppDialogs::About()
{
    TAboutForm::Execute(Owner());
}

bool TAppDialogs::SelectDatabase(TDbmManager &manager, QString &name)
{
    QStringList names;
    manager.Databases().RequestNames();
    manager.Databases().ForEach([&](TDbmDatabaseItem &item) { names += item.Name(); });
    return TDialogForm::RunFrame<TSelectDialogFrame>(
        Owner(),
        [&](TSelectDialogFrame &frame) { frame.SetParams("Select Database", names, name); },
        [&](TSelectDialogFrame &frame) { name = frame.GetResultName(); });
}

bool TAppDialogs::SelectDataObject(TDbmManager &manager, const QString &databaseName, QString &name)
{
    std::shared_ptr<TDbmDatabaseItem> database;
    if (!manager.Databases().TryGetByName(databaseName, database))
        return false;
    QStringList names;
    database->Tables().ForEach([&](TDbmTableItem &item) { names += item.Entity().TableName; });
    database->Views().ForEach([&](TDbmViewItem &item) { names += item.Entity().ViewName; });
    return TDialogForm::RunFrame<TSelectDialogFrame>(
        Owner(),
        [&](TSelectDialogFrame &frame) { frame.SetParams("Select Data Object", names, name); },
        [&](TSelectDialogFrame &frame) { name = frame.GetResultName(); });
}

bool TAppDialogs::SelectField(const QString &title, TDbmFieldList &fields,
                              const QStringList &excluded, QString &name)
{
    return TDialogForm::RunFrame<TFieldSelectDialogFrame>(
        Owner(),
        [&](TFieldSelectDialogFrame &frame) {
            frame.FIsSingleSelection = true;
            frame.FExcludedFieldNames = excluded;
            frame.Initialize(title, fields);
        },
        [&](TFieldSelectDialogFrame &frame) { name = frame.GetResultFieldName(); });
}

bool TAppDialogs::SelectFields(const QString &title, TDbmFieldList &fields, QStringList &names)
{
    return TDialogForm::RunFrame<TFieldSelectDialogFrame>(
        Owner(),
        [&](TFieldSelectDialogFrame &frame) {
            frame.FSelectedFieldNames = names;
            frame.Initialize(title, fields);
        },
        [&](TFieldSelectDialogFrame &frame) { names = frame.GetResultFieldNames(); });
}

bool TAppDialogs::ExportCSVOptions(TDatasetExportTextOptions &options)
{
    return TDialogForm::RunFrame<TExportCVSOptionsDialogFrame>(
        Owner(), [](TExportCVSOptionsDialogFrame &) {},
        [&](TExportCVSOptionsDialogFrame &frame) { options = frame.FOptions; });
}

bool TAppDialogs::SelectCharset(TDbmManager &manager, QString &name)
{
    return TDialogForm::RunFrame<TSelectCharsetDialogFrame>(
        Owner(), [&](TSelectCharsetDialogFrame &frame) { frame.Initialize(manager); },
        [&](TSelectCharsetDialogFrame &frame) { name = frame.GetResultName(); });
}
