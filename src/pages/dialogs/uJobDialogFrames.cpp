#include "pages/dialogs/uJobDialogFrames.h"

#include "app/uAppConfig.h"
#include "model/uDbmManager.h"
#include "shell/uAppDialogs.h"
#include "shell/uFileDialogs.h"
#include "shell/uGuard.h"
#include "support/uException.h"
#include "widgets/uVerticalGrid.h"
#include "widgets/uWaitCursor.h"

#include <QFileInfo>
#include <QVBoxLayout>

namespace {

TVerticalGrid *MakeGrid(QWidget *frame, const char *name, int rows)
{
    auto *grid = new TVerticalGrid(frame);
    grid->setObjectName(name);
    auto *column = new QVBoxLayout(frame);
    column->addWidget(grid);
    const QFontMetrics metrics(frame->font());
    frame->resize(metrics.averageCharWidth() * 76, metrics.height() * 2 * (rows + 1));
    return grid;
}

QStringList Charsets(TDbmManager &manager)
{
    QStringList names;
    manager.Charsets().ForEach([&](TDbmCharsetItem &item) { names += item.Entity().Name; });
    return names;
}

} // namespace

void TJobDialogFrame::DoCreate()
{
    vgOptions = MakeGrid(this, "vgOptions", 4);
    connect(vgOptions, &TVerticalGrid::OnRowChanged, this, [this] { UpdateOkButton(); });
}

TVerticalRow *TJobDialogFrame::AddButtonRow(
    const QString &name, const QString &caption, const QStringList &buttons,
    const std::function<void(const QString &button)> &pressed, bool canType)
{
    TVerticalRow *row = vgOptions->Add(canType ? rkTextButton : rkReadOnlyButtons, name, caption);
    row->SetButtons(buttons);
    connect(row, &TVerticalRow::OnButton, this,
            [this, pressed](TVerticalRow *, const QString &button) {
                TGuard::Run([&] { pressed(button); });
                UpdateOkButton();
            });
    return row;
}

void TJobDialogFrame::AddCharsetRow()
{
    rowCharset = vgOptions->Add(rkFixedCombo, "rowCharset", "Charset");
    rowCharset->SetWhenEmpty("(default)");
    rowCharset->SetValuesFunction(
        [this] { return FManager ? Charsets(*FManager) : QStringList(); });
}

QString TJobDialogFrame::Charset() const
{
    return rowCharset->Text();
}

void TJobDialogFrame::SelectDatabase(TDbmManager &manager, TVerticalRow *row)
{
    QString name = row->Text();
    if (TAppDialogs::SelectDatabase(manager, name))
        row->SetValue(name);
}

void TCreateSqlDumpDialogFrame::DoCreate()
{
    TJobDialogFrame::DoCreate();
    rowDatabase = AddButtonRow("rowDatabase", "Source database", {"select"},
                               [this](const QString &) { SelectDatabase(*FManager, rowDatabase); });
    rowFileName = AddButtonRow("rowFileName", "Target file name", {"Select"},
                               [this](const QString &) { SelectFile(); });
    AddCharsetRow();
    rowOnlyStructure = vgOptions->Add(rkCheck, "rowOnlyStructure", "Dump only structure");
}

void TCreateSqlDumpDialogFrame::Initialize(TDbmManager &manager, const QString &databaseName)
{
    FManager = &manager;
    rowDatabase->SetValue(databaseName);
    rowDatabase->SetShown(!manager.IsDatabaseConnection());
}

bool TCreateSqlDumpDialogFrame::IsComplete() const
{
    return !rowDatabase->Text().isEmpty() && !rowFileName->Text().isEmpty();
}

void TCreateSqlDumpDialogFrame::SelectFile()
{
    const QString before = rowFileName->Text();
    TFileDialogs::TOptions options{.Folder = TAppConfig::ReadLastDumpFolder(),
                                   .DefaultName = rowDatabase->Text() + ".sql",
                                   .Extension = "sql",
                                   .Filter = "*.sql"};
    if (!before.isEmpty()) {
        options.Folder = QFileInfo(before).path();
        options.DefaultName = QFileInfo(before).fileName();
    }
    QString fileName;
    if (!TFileDialogs::Save(this, options, fileName))
        return;
    TAppConfig::WriteLastDumpFolder(QFileInfo(fileName).path());
    rowFileName->SetValue(fileName);
}

void TCreateSqlDumpDialogFrame::DoProcess()
{
    vgOptions->CommitEdit();
    FResultDatabaseName = rowDatabase->Text();
    FResultFileName = rowFileName->Text();
    FResultCharset = Charset();
    FResultOnlyStructure = rowOnlyStructure->IsChecked();
}

void TExecuteDumpDialogFrame::DoCreate()
{
    TJobDialogFrame::DoCreate();
    rowFileName = AddButtonRow("rowFileName", "File name", {"select"},
                               [this](const QString &) { SelectFile(); });
    rowDatabase = AddButtonRow("rowDatabase", "Use database", {"select", "none"},
                               [this](const QString &button) {
                                   if (button == "none")
                                       rowDatabase->SetValue(QString());
                                   else
                                       SelectDatabase(*FManager, rowDatabase);
                               });
    rowDatabase->SetWhenEmpty("(do not use)");
    AddCharsetRow();
}

void TExecuteDumpDialogFrame::Initialize(TDbmManager &manager, const QString &fileName)
{
    FManager = &manager;
    rowFileName->SetValue(fileName);
    rowDatabase->SetShown(!manager.IsDatabaseConnection());
}

bool TExecuteDumpDialogFrame::IsComplete() const
{
    return !rowFileName->Text().isEmpty();
}

void TExecuteDumpDialogFrame::SelectFile()
{
    QString fileName;
    if (!TFileDialogs::Open(
            this,
            {.Folder = TAppConfig::ReadLastDumpFolder(), .Extension = "sql", .Filter = "*.sql"},
            fileName))
        return;
    TAppConfig::WriteLastDumpFolder(QFileInfo(fileName).path());
    rowFileName->SetValue(fileName);
}

void TExecuteDumpDialogFrame::DoProcess()
{
    vgOptions->CommitEdit();
    FResultFileName = rowFileName->Text();
    FResultDatabaseName = rowDatabase->Text();
    FResultCharset = Charset();
}

void TMigrateDatabaseDialogFrame::DoCreate()
{
    TJobDialogFrame::DoCreate();
    rowSource = AddButtonRow("rowSource", "Source database", {"select"},
                             [this](const QString &) { SelectDatabase(*FManager, rowSource); });
    rowTargetHost = AddButtonRow("rowTargetHost", "Target host", {"select"},
                                 [this](const QString &) { SelectTarget(); });
    rowTargetDatabase = AddButtonRow(
        "rowTargetDatabase", "Target database", {"select"},
        [this](const QString &) { SelectTargetDatabase(); }, true);
    AddCharsetRow();
}

void TMigrateDatabaseDialogFrame::Initialize(TDbmManager &manager, const QString &databaseName)
{
    FManager = &manager;
    rowSource->SetValue(databaseName);
    rowTargetDatabase->SetValue(databaseName);
}

bool TMigrateDatabaseDialogFrame::IsComplete() const
{
    return !rowSource->Text().isEmpty() && FHasTargetProfile &&
           !rowTargetDatabase->Text().trimmed().isEmpty();
}

void TMigrateDatabaseDialogFrame::SelectTarget()
{
    if (!TAppDialogs::OpenProfile(FTargetProfile))
        return;
    FHasTargetProfile = true;
    rowTargetHost->SetValue(FTargetProfile.GetDisplayString());
}

void TMigrateDatabaseDialogFrame::SelectTargetDatabase()
{
    if (!FHasTargetProfile)
        return;
    const std::unique_ptr<TDbmManager> manager = TDbmManager::Create();
    TWaitCursor::Show();
    try {
        manager->SetParams(FTargetProfile.ConnectionProfile);
        manager->Connect();
    } catch (...) {
        TWaitCursor::Hide();
        throw;
    }
    TWaitCursor::Hide();
    SelectDatabase(*manager, rowTargetDatabase);
}

void TMigrateDatabaseDialogFrame::DoProcess()
{
    vgOptions->CommitEdit();
    if (!IsComplete())
        throw EException("The target database has no name.");
    FResultSourceProfile = FManager->ConnectionProfile();
    FResultTargetProfile = FTargetProfile.ConnectionProfile;
    FResultSourceDatabaseName = rowSource->Text();
    FResultTargetDatabaseName = rowTargetDatabase->Text().trimmed();
    FResultCharset = Charset();
}

void TDatabaseObjectNameDialogFrame::DoCreate()
{
    vgObject = MakeGrid(this, "vgObject", 2);
    rowDatabase = vgObject->Add(rkFixedCombo, "rowDatabase", "Database");
    rowName = vgObject->Add(rkText, "rowName", "Name");
}

void TDatabaseObjectNameDialogFrame::Initialize(TDbmManager &manager, const QString &title,
                                                const QString &okTitle, const QString &databaseName,
                                                const QString &objectName,
                                                std::function<void()> action)
{
    FTitle = title;
    FOkTitle = okTitle;
    FAction = std::move(action);
    rowDatabase->SetValuesFunction([&manager] {
        QStringList names;
        manager.Databases().RequestNames();
        manager.Databases().ForEach([&](TDbmDatabaseItem &item) { names += item.Name(); });
        names.sort(Qt::CaseInsensitive);
        return names;
    });
    rowDatabase->SetValue(databaseName);
    rowName->SetValue(objectName);
}

void TDatabaseObjectNameDialogFrame::DoProcess()
{
    vgObject->CommitEdit();
    FResultDatabaseName = rowDatabase->Text();
    FResultObjectName = rowName->Text().trimmed();
    if (FResultObjectName.isEmpty())
        throw EException("The object has no name.");
    FAction();
}
