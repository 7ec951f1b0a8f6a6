#include "pages/data/uTableDataFrame.h"

#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "pages/data/uDataFilterFrame.h"
#include "pages/data/uDataFrame.h"
#include "pages/data/uTableDataControls.h"
#include "shell/uAppDialogs.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppMessages.h"
#include "shell/uAppUtils.h"
#include "shell/uGuard.h"
#include "shell/uManagerFrame.h"
#include "support/uException.h"
#include "support/uFormat.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>
#include <algorithm>
#include <limits>

namespace {

// What is no number is 0. As far as the session keeps such a number.
qint64 NumberOf(const QString &text)
{
    return std::min<qint64>(text.toLongLong(), std::numeric_limits<qint32>::max());
}

} // namespace

// What the user does to a page of rows. A change asks for a fetch; several in a row lead to one.

void TTableDataFrame::Refresh()
{
    if (FDisableProcess || !CommitEdit())
        return;
    FData->RequestProcess();
    TAppMessages::SendRedrawUI();
}

// What is being typed into a cell is written ahead of whatever takes the cell away; when the server
// refuses it, the cell stays and nothing else is done.
bool TTableDataFrame::CommitEdit()
{
    return FDataFrame->CommitEdit();
}

void TTableDataFrame::Toggle(QAction *action, const std::function<void(bool checked)> &work)
{
    const bool checked = action->isChecked();
    if (CommitEdit())
        return work(checked);
    const QSignalBlocker blocker(action);
    action->setChecked(!checked);
}

void TTableDataFrame::GotoPage(qint64 page)
{
    FControls->edPageNum->setText(QString::number(page));
    PageTyped();
}

// What is no number starts nothing and gives way to the page that is shown.
void TTableDataFrame::PageTyped()
{
    if (FDisableProcess)
        return;
    const qint64 page =
        NumberOf(FControls->edPageNum->text()); // a cell that is written shows the old
    if (!CommitEdit())
        return UpdateControls();
    const qint64 before = FData->CurrentPage();
    FData->SetCurrentPage(page);
    if (FData->CurrentPage() == before)
        UpdateControls();
    else
        Refresh();
}

void TTableDataFrame::RowsTyped()
{
    if (FDisableProcess)
        return;
    const qint64 rows = NumberOf(FControls->cbxRows->currentText());
    if (!CommitEdit())
        return UpdateControls();
    const qint64 before = FData->RowsPerPage();
    FData->SetRowsPerPage(rows);
    if (FData->RowsPerPage() == before)
        UpdateControls();
    else
        Refresh();
}

void TTableDataFrame::ShowText(bool checked)
{
    if (FDisableProcess)
        return;
    FData->SetShowTextColumns(checked);
    Refresh();
    QStringList names;
    for (auto kind = FFieldKinds.cbegin(); kind != FFieldKinds.cend(); ++kind)
        if (kind->IsText)
            names.append(kind.key());
    FDataFrame->BestFit(names);
}

void TTableDataFrame::SetFilterVisible(bool visible)
{
    FControls->panFilter->setVisible(visible);
    if (visible && !FDisableProcess)
        FDataFilterFrame->setFocus();
    Refresh();
}

void TTableDataFrame::SortingChanged()
{
    FData->SetOrderFieldName(FDataFrame->SortFieldName());
    FData->SetOrderAscending(FDataFrame->SortAscending());
    Refresh();
}

void TTableDataFrame::CreateRecord()
{
    if (CommitEdit() && TAppDialogs::CreateDataRecord(*FManager, FDatabaseName, FTableName))
        Refresh();
}

void TTableDataFrame::UpdateRecord()
{
    if (!CommitEdit())
        return;
    QStringList names;
    TVariantList values;
    GetRowKey(names, values);
    if (TAppDialogs::UpdateDataRecord(*FManager, FDatabaseName, names, values, FTableName))
        Refresh();
}

void TTableDataFrame::DeleteRecord()
{
    if (!CommitEdit())
        return;
    QStringList names;
    TVariantList values;
    GetRowKey(names, values);
    if (TAppDialogs::DeleteDataRecord(*FManager, FDatabaseName, names, values, FTableName))
        Refresh();
}

void TTableDataFrame::OpenObject()
{
    TAppUtils::Instance().GetActiveManager()->PageUtils().ShowTable(FDatabaseName, FTableName,
                                                                    true);
}

void TTableDataFrame::Truncate()
{
    if (TAppDialogs::TruncateTable(*FManager, FDatabaseName, FTableName))
        Refresh();
}

// A value that came as its length is read when it is edited. A refusal leads back to the dialog,
// with what was typed.
void TTableDataFrame::EditWhole(const QString &fieldName)
{
    QStringList names;
    TVariantList values;
    GetRowKey(names, values);
    const TVariant before = ReadWhole(fieldName, names, values);
    TVariant value = before;
    const auto write = [&] {
        if (FManager->Commands().Data().ExecuteUpdateRow(FDatabaseName, FTableName, values, names,
                                                         {value}, {fieldName}) == 0)
            throw EException("The record was not changed: it does not exist any more.");
    };
    while (EditValue(fieldName, before, value))
        if (TGuard::Run(write))
            return Refresh();
}

TVariant TTableDataFrame::ReadWhole(const QString &fieldName, const QStringList &names,
                                    const TVariantList &values) const
{
    TVariant value;
    const bool found = FManager->Commands().Data().TrySelectRow(
        FDatabaseName, FTableName,
        [&](const TDataSet &row) {
            const TField &field = row.FieldByName(fieldName);
            const bool isBlob = FFieldKinds.value(fieldName).IsBlob;
            if (!isBlob && field.Value().IsBytes())
                throw EException(TFormat::Format(
                    "The value of \"%s\" is no text in its character set.", {fieldName}));
            if (!field.IsNull())
                value = isBlob ? TVariant(field.AsBytes()) : TVariant(field.AsString());
            return true;
        },
        values, names);
    if (!found)
        throw EException("The record is not found: it was changed or deleted meanwhile.");
    return value;
}

// False when nothing is to be written. As everywhere, no bytes stand for NULL; a text that was NULL
// and got none stays NULL.
bool TTableDataFrame::EditValue(const QString &fieldName, const TVariant &before,
                                TVariant &value) const
{
    if (!FFieldKinds.value(fieldName).IsBlob) {
        QString text;
        const bool isConfirmed = TAppDialogs::TextEditor(fieldName, value.ToString(), text);
        value = text;
        return isConfirmed && text != before.ToString();
    }
    const auto bytesOf = [](const TVariant &from) {
        return from.IsBytes() ? from.As<QByteArray>() : QByteArray();
    };
    QByteArray bytes;
    const bool isConfirmed = TAppDialogs::BlobEditor(fieldName, bytesOf(value), bytes);
    value = bytes.isEmpty() ? TVariant() : TVariant(bytes);
    return isConfirmed && bytes != bytesOf(before);
}

// The whole key or none: a part of it would meet other rows too.
void TTableDataFrame::GetRowKey(QStringList &names, TVariantList &values) const
{
    std::shared_ptr<TDbmTableItem> table;
    if (!FManager->TryGetTable(FDatabaseName, FTableName, table) || !table->TryGetRowKey(names) ||
        names.isEmpty())
        throw EException("This table should have a primary key.");
    const TDataSet &dataset = FData->Dataset();
    for (const QString &name : names) {
        const TField *field = dataset.FindField(name);
        const TFieldKind kind = FFieldKinds.value(name);
        // A length in place of the value would be the key of another row.
        const bool isLength = kind.IsBlob || (kind.IsText && !FData->ShowTextColumns());
        if (!field || isLength || dataset.RecNo() < 0)
            throw EException("Failed to get primary values for the record.");
        if (field->Info().IsSinglePrecision())
            throw EException(TFormat::Format("The key column \"%s\" of \"%s\" is a FLOAT, by which "
                                             "no row can be found exactly.",
                                             {name, FTableName}));
        values.append(field->Value());
    }
}
