#include "shell/uAppDialogs.h"

#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "pages/data/uBlobDialogFrame.h"
#include "pages/data/uDataRecordDialogFrame.h"
#include "pages/data/uTextDialogFrame.h"
#include "shell/uDialogForm.h"
#include "support/uException.h"

bool TAppDialogs::TextEditor(const QString &title, const QString &value, QString &result)
{
    return TDialogForm::RunFrame<TTextDialogFrame>(
        Owner(), [&](TTextDialogFrame &frame) { frame.SetParams(title, value); },
        [&](TTextDialogFrame &frame) { result = frame.GetResultText(); });
}

bool TAppDialogs::BlobEditor(const QString &title, const QByteArray &value, QByteArray &result)
{
    return TDialogForm::RunFrame<TBlobDialogFrame>(Owner(), [&](TBlobDialogFrame &frame) {
        frame.SetParams(title, value);
        frame.SetOnValue([&result](const QByteArray &bytes) { result = bytes; });
    });
}

bool TAppDialogs::CreateDataRecord(TDbmManager &manager, const QString &databaseName,
                                   const QString &tableName)
{
    return TDialogForm::RunFrame<TDataRecordDialogFrame>(
        Owner(), [&](TDataRecordDialogFrame &frame) {
            frame.InitializeCreate(manager, databaseName, tableName);
        });
}

bool TAppDialogs::UpdateDataRecord(TDbmManager &manager, const QString &databaseName,
                                   const QStringList &whereFields, const TVariantList &whereValues,
                                   const QString &tableName)
{
    return TDialogForm::RunFrame<TDataRecordDialogFrame>(
        Owner(), [&](TDataRecordDialogFrame &frame) {
            frame.InitializeUpdate(manager, databaseName, tableName, whereFields, whereValues);
        });
}

bool TAppDialogs::DeleteDataRecord(TDbmManager &manager, const QString &databaseName,
                                   const QStringList &whereFields, const TVariantList &whereValues,
                                   const QString &tableName)
{
    return Execute("Do you really want to delete this record?", [&] {
        if (manager.Commands().Data().ExecuteDeleteRow(databaseName, tableName, whereValues,
                                                       whereFields) == 0)
            throw EException("The record was not deleted: it does not exist any more.");
    });
}

bool TAppDialogs::TruncateTable(TDbmManager &manager, const QString &databaseName,
                                const QString &tableName)
{
    std::shared_ptr<TDbmTableItem> table;
    return manager.TryGetTable(databaseName, tableName, table) &&
           Execute("Do you really want to delete all rows from this table?",
                   [&] { manager.Commands().Tables().ExecuteTruncate(databaseName, tableName); });
}
