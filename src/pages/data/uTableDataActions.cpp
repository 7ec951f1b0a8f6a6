#include "pages/data/uTableDataFrame.h"

#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "pages/data/uDataFilterFrame.h"
#include "pages/data/uDataFrame.h"
#include "pages/data/uTableDataControls.h"
#include "shell/uAppDialogs.h"
#include "shell/uAppMessages.h"
#include "support/uException.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>

// What the user does to a page of rows. A change asks for a fetch; several in a row lead to one.

void TTableDataFrame::Refresh()
{
    if (FDisableProcess)
        return;
    FData->RequestProcess();
    TAppMessages::SendRedrawUI();
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
    const qint64 before = FData->CurrentPage();
    FData->SetCurrentPage(FControls->edPageNum->text().toLongLong());
    if (FData->CurrentPage() == before)
        UpdateControls();
    else
        Refresh();
}

void TTableDataFrame::RowsTyped()
{
    if (FDisableProcess)
        return;
    const qint64 before = FData->RowsPerPage();
    FData->SetRowsPerPage(FControls->cbxRows->currentText().toLongLong());
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
    if (visible)
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
    if (TAppDialogs::CreateDataRecord(*FManager, FDatabaseName, FTableName))
        Refresh();
}

void TTableDataFrame::UpdateRecord()
{
    QStringList names;
    TVariantList values;
    GetRowKey(names, values);
    if (TAppDialogs::UpdateDataRecord(*FManager, FDatabaseName, names, values, FTableName))
        Refresh();
}

void TTableDataFrame::DeleteRecord()
{
    QStringList names;
    TVariantList values;
    GetRowKey(names, values);
    if (TAppDialogs::DeleteDataRecord(*FManager, FDatabaseName, names, values, FTableName))
        Refresh();
}

void TTableDataFrame::Truncate()
{
    if (TAppDialogs::TruncateTable(*FManager, FDatabaseName, FTableName))
        Refresh();
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
        values.append(field->Value());
    }
}
