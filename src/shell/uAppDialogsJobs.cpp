#include "jobs/uAppWorkers.h"
#include "jobs/uDbmTableCloner.h"
#include "model/uDbmManager.h"
#include "pages/dialogs/uJobDialogFrames.h"
#include "pages/dialogs/uRenameDialogFrame.h"
#include "shell/uAppDialogs.h"
#include "shell/uDialogForm.h"
#include "widgets/uWaitCursor.h"

#include <QMessageBox>

// Each job starts when its dialog is closed: its window must not stand on one.

bool TAppDialogs::CreateSqlDump(TDbmManager &manager, const QString &databaseName)
{
    QString database, fileName, charset;
    bool onlyStructure = false;
    const QString bound = manager.ConnectionProfile().Database;
    const bool isOk = TDialogForm::RunFrame<TCreateSqlDumpDialogFrame>(
        Owner(),
        [&](TCreateSqlDumpDialogFrame &frame) {
            frame.Initialize(manager, databaseName.isEmpty() ? bound : databaseName);
        },
        [&](TCreateSqlDumpDialogFrame &frame) {
            database = frame.FResultDatabaseName;
            fileName = frame.FResultFileName;
            charset = frame.FResultCharset;
            onlyStructure = frame.FResultOnlyStructure;
        });
    if (isOk)
        TAppWorkers::Instance().CreateDump(manager.ConnectionProfile(), database, fileName, charset,
                                           onlyStructure);
    return isOk;
}

bool TAppDialogs::ExecuteSqlDump(TDbmManager &manager, const QString &fileName)
{
    QString database, file, charset;
    const bool isOk = TDialogForm::RunFrame<TExecuteDumpDialogFrame>(
        Owner(), [&](TExecuteDumpDialogFrame &frame) { frame.Initialize(manager, fileName); },
        [&](TExecuteDumpDialogFrame &frame) {
            database = frame.FResultDatabaseName;
            file = frame.FResultFileName;
            charset = frame.FResultCharset;
        });
    if (isOk)
        TAppWorkers::Instance().ExecuteDump(manager.ConnectionProfile(), file, database, charset);
    return isOk;
}

bool TAppDialogs::MigrateDatabase(TDbmManager &manager, const QString &databaseName)
{
    TDbmConnectionProfile source, target;
    QString sourceName, targetName, charset;
    const bool isOk = TDialogForm::RunFrame<TMigrateDatabaseDialogFrame>(
        Owner(),
        [&](TMigrateDatabaseDialogFrame &frame) { frame.Initialize(manager, databaseName); },
        [&](TMigrateDatabaseDialogFrame &frame) {
            source = frame.FResultSourceProfile;
            target = frame.FResultTargetProfile;
            sourceName = frame.FResultSourceDatabaseName;
            targetName = frame.FResultTargetDatabaseName;
            charset = frame.FResultCharset;
        });
    if (isOk)
        TAppWorkers::Instance().MigrateDatabase(source, target, sourceName, targetName, charset);
    return isOk;
}

bool TAppDialogs::CloneDatabase(TDbmManager &manager, const QString &databaseName)
{
    QString newName;
    const bool isOk = TDialogForm::RunFrame<TRenameDialogFrame>(
        Owner(),
        [&](TRenameDialogFrame &frame) {
            frame.SetParams("Clone database", databaseName, [](const QString &) {});
        },
        [&](TRenameDialogFrame &frame) { newName = frame.GetResultName(); });
    if (isOk)
        TAppWorkers::Instance().CloneDatabase(manager, databaseName, newName);
    return isOk;
}

bool TAppDialogs::CloneTable(TDbmManager &manager, const QString &databaseName,
                             const QString &tableName)
{
    TDbmTableCloner cloner;
    const bool isOk = TDialogForm::RunFrame<TDatabaseObjectNameDialogFrame>(
        Owner(),
        [&](TDatabaseObjectNameDialogFrame &frame) {
            frame.Initialize(manager, "Clone table", "Clone", databaseName, tableName + "_copy",
                             [&] {
                                 cloner.Initialize(manager, databaseName, frame.FResultObjectName,
                                                   frame.FResultDatabaseName, tableName);
                                 TWaitCursor::Show();
                                 cloner.Execute();
                             });
        },
        [](TDatabaseObjectNameDialogFrame &) {});
    if (isOk && !cloner.LeftOut().isEmpty())
        QMessageBox::information(Owner(), "Korvane", cloner.LeftOut().join('\n'));
    return isOk;
}
