#include "pages/data/uDataFrame.h"

#include "client/uDataSet.h"
#include "shell/uAppDialogs.h"
#include "widgets/uDataSetGrid.h"
#include "widgets/uDataSetModel.h"

#include <QEvent>
#include <QMenu>
#include <QVBoxLayout>

TDataFrame::TDataFrame(QWidget *owner) : TBaseFrame(owner) {}

TDataFrame::~TDataFrame() = default;

void TDataFrame::DoCreate()
{
    FGrid = new TDataSetGrid(this);
    FGrid->setObjectName("grdData");
    FGrid->setAccessibleName("Data");
    FModel = FGrid->DataModel();
    FModel->SetOnGetColumnColor([this](const QString &name) { return ColumnColor(name); });
    FGrid->SetOnEditBytes([](const QString &name, QByteArray &bytes) {
        QByteArray result;
        const bool isConfirmed = TAppDialogs::BlobEditor(name, bytes, result);
        bytes = result;
        return isConfirmed;
    });
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(FGrid);
    setFocusProxy(FGrid);
    connect(FGrid, &TDataSetGrid::OnSortRequested, this, &TDataFrame::SortingChanged);
    connect(FGrid, &TDataSetGrid::OnUpdateRequested, this, [this] { Request(FOnUpdateRecord); });
    connect(FGrid, &TDataSetGrid::OnAppendRequested, this, [this] { Request(FOnAppendRecord); });
    connect(FGrid, &TDataSetGrid::OnDeleteRequested, this, [this] { Request(FOnDeleteRecord); });
    connect(FModel, &TDataSetModel::OnDataChange, this, &TDataFrame::OnDataChange);
}

void TDataFrame::DoDestroy()
{
    SetNullParams();
}

void TDataFrame::SetParams(TDataSet *dataset)
{
    FModel->SetDataset(dataset);
}

void TDataFrame::SetNullParams()
{
    FModel->SetDataset(nullptr);
}

TDataSet *TDataFrame::Dataset() const
{
    return FModel->Dataset();
}

// Kept colours are those of the light or the dark palette, whichever was on.
void TDataFrame::changeEvent(QEvent *event)
{
    TBaseFrame::changeEvent(event);
    if (event->type() != QEvent::PaletteChange || !FModel)
        return;
    FColumnStyleDict.clear();
    FModel->ResetColors();
}

void TDataFrame::Process()
{
    FColumnStyleDict.clear();
    FModel->ResetColors();
    FGrid->RebuildColumns();
    RestoreSortMark();
}

void TDataFrame::RestoreSortMark()
{
    int column = -1;
    for (int i = 0; i < FModel->columnCount() && column < 0; ++i)
        if (!FSortFieldName.isEmpty() && FModel->FieldName(i) == FSortFieldName)
            column = i;
    FGrid->MarkSort(column, FSortAscending);
    if (!FSortByOwner && FModel->SortColumn() != column)
        FModel->sort(column, FSortAscending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

void TDataFrame::BestFit(const QStringList &fieldNames)
{
    FGrid->BestFit(fieldNames);
}

void TDataFrame::SetPopupMenu(QMenu *menu)
{
    FGrid->addActions(menu->actions());
}

void TDataFrame::SetEditMode(bool value)
{
    FEditMode = value;
    FGrid->SetEditMode(value);
}

bool TDataFrame::CommitEdit()
{
    return FGrid->CommitEdit();
}

void TDataFrame::ForgetPlace()
{
    FGrid->ForgetPlace();
}

void TDataFrame::SetOnGetMembers(TGetMembersEvent event)
{
    FModel->SetOnGetMembers(std::move(event));
}

void TDataFrame::SetOnEditWhole(std::function<void(const QString &FieldName)> event)
{
    FGrid->SetOnEditWhole(std::move(event));
}

void TDataFrame::SetSortByOwner(bool value)
{
    FSortByOwner = value;
    FGrid->SetSortsItself(!value);
}

void TDataFrame::SetSort(const QString &fieldName, bool ascending)
{
    FSortFieldName = fieldName;
    FSortAscending = ascending;
}

void TDataFrame::SetOnGetDisplayText(TGetDisplayTextEvent event)
{
    FModel->SetOnGetDisplayText(std::move(event));
}

void TDataFrame::SetOnGetColumnColor(TGetColumnColorEvent event)
{
    FOnGetColumnColor = std::move(event);
    FColumnStyleDict.clear();
    FModel->ResetColors();
}

QColor TDataFrame::ColumnColor(const QString &fieldName)
{
    const auto known = FColumnStyleDict.constFind(fieldName);
    if (known != FColumnStyleDict.constEnd())
        return *known;
    QColor color = palette().color(QPalette::Text);
    if (FOnGetColumnColor)
        FOnGetColumnColor(fieldName, color);
    return FColumnStyleDict[fieldName] = color;
}

void TDataFrame::SortingChanged(int column, bool ascending)
{
    FSortFieldName = FModel->FieldName(column);
    FSortAscending = ascending && column >= 0;
    Q_EMIT OnSortingChanged();
}

void TDataFrame::Request(const TRecordEvent &event)
{
    if (event)
        event(Dataset());
}
