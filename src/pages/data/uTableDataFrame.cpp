#include "pages/data/uTableDataFrame.h"

#include "core/uDbmErrorNames.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "model/uDbmViewList.h"
#include "pages/data/uDataFilterFrame.h"
#include "pages/data/uDataFrame.h"
#include "pages/data/uFieldItemKinds.h"
#include "pages/data/uRecordValues.h"
#include "pages/data/uTableDataControls.h"
#include "shell/uAppMessages.h"
#include "shell/uGuard.h"
#include "support/uFormat.h"
#include "widgets/uDataSetGrid.h"
#include "widgets/uWaitCursor.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QUrl>

namespace {

std::shared_ptr<TDbmTableItem> FindTable(TDbmManager &manager, const QString &database,
                                         const QString &name)
{
    std::shared_ptr<TDbmTableItem> table;
    manager.TryGetTable(database, name, table);
    return table;
}

std::shared_ptr<TDbmViewItem> FindView(TDbmManager &manager, const QString &database,
                                       const QString &name)
{
    std::shared_ptr<TDbmViewItem> view;
    manager.TryGetView(database, name, view);
    return view;
}

/// A condition that ends in a comment would take the order and the limit behind it along, and a
/// page would be the whole table; a line of its own ends the comment.
QString ClosedCondition(const QString &text)
{
    const QString lastLine = text.mid(text.lastIndexOf('\n') + 1);
    return lastLine.contains("--") || lastLine.contains('#') ? text + '\n' : text;
}

/// Finds a record again after its rows were read anew. Without a key it is known by its number.
class TRecordMark
{
public:
    TRecordMark(const TDataSet &dataset, const QStringList &keyNames)
        : FDataset(dataset), FKeyNames(keyNames), FRow(dataset.RecNo()),
          FKey(FRow >= 0 ? KeyAt(FRow) : QStringList())
    {}

    qint64 Row() const
    {
        const qint64 rows = FDataset.RecordCount();
        if (FKey.isEmpty() || (FRow < rows && KeyAt(FRow) == FKey))
            return FRow;
        for (qint64 row = 0; row < rows; ++row)
            if (KeyAt(row) == FKey)
                return row;
        return FRow;
    }

private:
    QStringList KeyAt(qint64 row) const
    {
        QStringList key;
        for (const QString &name : FKeyNames)
            if (const TField *field = FDataset.FindField(name))
                key += field->AsStringAt(row);
        return key;
    }

    const TDataSet &FDataset;
    const QStringList FKeyNames;
    const qint64 FRow;
    const QStringList FKey;
};

} // namespace

TTableDataFrame::TTableDataFrame(QWidget *owner) : TBaseFrame(owner) {}

TTableDataFrame::~TTableDataFrame() = default;

void TTableDataFrame::DoCreate()
{
    TBaseFrame::DoCreate();
    FControls = new TTableDataControls(this);
    FDataFrame = New<TDataFrame>(FControls->tshData);
    FDataFrame->MoveTo(FControls->tshData);
    FDataFilterFrame = New<TDataFilterFrame>(FControls->panFilter);
    FDataFilterFrame->MoveTo(FControls->panFilter);
    ConnectDataFrame();
    ConnectActions();
    ConnectPageControls();
    setFocusProxy(FDataFrame);
}

void TTableDataFrame::DoDestroy()
{
    FDataFrame->SetNullParams();
    if (FData)
        FManager->DataPool().ReleaseData(FData);
    FData.reset();
    TBaseFrame::DoDestroy();
}

void TTableDataFrame::Initialize(TDbmManager *manager)
{
    FManager = manager;
    FData = manager->DataPool().AddData();
    UpdateUI();
}

void TTableDataFrame::SetParams(const QString &databaseName, const QString &tableName)
{
    // Rows of the name before are none of the renamed table's to be changed.
    if (!FTableName.isEmpty() && (FTableName != tableName || FDatabaseName != databaseName))
        FData->RequestProcess();
    FDatabaseName = databaseName;
    FTableName = tableName;
    FData->SetParams(databaseName, tableName);
    FDataFrame->Grid()->RememberWidths("data." + QUrl::toPercentEncoding(databaseName) + '.' +
                                       QUrl::toPercentEncoding(tableName));
}

void TTableDataFrame::ConnectDataFrame()
{
    FDataFrame->SetEditMode(false);
    FDataFrame->SetSortByOwner(true);
    auto *menu = new QMenu(FDataFrame);
    menu->addAction(FControls->actUpdate);
    menu->addSeparator();
    menu->addAction(FControls->actDelete);
    FDataFrame->SetPopupMenu(menu);
    FDataFrame->SetOnGetDisplayText(
        [this](const QString &name, QString &text) { GetDisplayText(name, text); });
    FDataFrame->SetOnGetColumnColor([this](const QString &name, QColor &color) {
        color = TAppFieldTypeColors::Color(FFieldKinds.value(name).Kind);
    });
    FDataFrame->SetOnGetMembers([this](const TField &field) {
        return TRecordValues::MembersOf(FFieldKinds.value(field.FieldName()).TypeText);
    });
    FDataFrame->SetOnEditWhole(
        [this](const QString &name) { TGuard::Run([&] { EditWhole(name); }); });
    FDataFrame->SetOnAppendRecord([this](TDataSet *) { FControls->actCreate->trigger(); });
    FDataFrame->SetOnUpdateRecord([this](TDataSet *) { FControls->actUpdate->trigger(); });
    FDataFrame->SetOnDeleteRecord([this](TDataSet *) { FControls->actDelete->trigger(); });
    connect(FDataFrame, &TDataFrame::OnSortingChanged, this, &TTableDataFrame::SortingChanged);
    connect(FDataFrame, &TDataFrame::OnDataChange, this, [this] {
        if (!FDisableProcess)
            UpdateUI();
    });
    FDataFilterFrame->SetOnApply([this] {
        if (!CommitEdit())
            return;
        FWhereCommandText = FDataFilterFrame->Text();
        Refresh();
    });
}

void TTableDataFrame::ConnectActions()
{
    const auto on = [this](QAction *action, auto work) {
        connect(action, &QAction::triggered, this, [work] { TGuard::Run(work); });
    };
    on(FControls->actCreate, [this] { CreateRecord(); });
    on(FControls->actUpdate, [this] { UpdateRecord(); });
    on(FControls->actDelete, [this] { DeleteRecord(); });
    on(FControls->actTruncate, [this] { Truncate(); });
    on(FControls->actOpenObject, [this] { OpenObject(); });
    on(FControls->actRefresh, [this] { Refresh(); });
    on(FControls->actFirstPage, [this] { GotoPage(1); });
    on(FControls->actPrevPage, [this] { GotoPage(FData->CurrentPage() - 1); });
    on(FControls->actNextPage, [this] { GotoPage(FData->CurrentPage() + 1); });
    on(FControls->actLastPage, [this] { GotoPage(FData->PageCount()); });
    const auto toggles = [this](QAction *action, const std::function<void(bool)> &work) {
        connect(action, &QAction::toggled, this,
                [=, this] { TGuard::Run([=, this] { Toggle(action, work); }); });
    };
    toggles(FControls->actEditMode, [this](bool checked) { FDataFrame->SetEditMode(checked); });
    toggles(FControls->actShowText, [this](bool checked) { ShowText(checked); });
    toggles(FControls->actFilter, [this](bool checked) { SetFilterVisible(checked); });
}

void TTableDataFrame::ConnectPageControls()
{
    connect(FControls->edPageNum, &QLineEdit::editingFinished, this,
            [this] { TGuard::Run([this] { PageTyped(); }); });
    connect(FControls->cbxRows->lineEdit(), &QLineEdit::editingFinished, this,
            [this] { TGuard::Run([this] { RowsTyped(); }); });
    connect(FControls->cbxRows, &QComboBox::activated, this,
            [this] { TGuard::Run([this] { RowsTyped(); }); });
}

void TTableDataFrame::Process()
{
    // Rows that somebody is typing into go on once that is written.
    if (!FData->IsProcessed() && !CommitEdit())
        return;
    const QScopedValueRollback hold(FDisableProcess, true);
    FetchPage();
}

void TTableDataFrame::FetchPage()
{
    FData->SetWhereCommandText(
        FControls->actFilter->isChecked() ? ClosedCondition(FWhereCommandText) : QString());
    // A read that failed left the old rows behind. They are not the answer to what was asked.
    if (FFailed && FData->IsProcessed())
        return;
    TWaitCursor::Show();
    FFailed = true;
    const auto update = qScopeGuard([this] { UpdateUI(); });
    try {
        ReadFieldKinds();
        // A column that is gone leaves no header to take its order off.
        if (!FFieldKinds.isEmpty() && !FFieldKinds.contains(FData->OrderFieldName()))
            FData->SetOrderFieldName({});
        TDataSet &dataset = ReadPage();
        FFailed = false;
        FControls->ShowData();
        FDataFrame->SetParams(&dataset);
        FDataFrame->SetSort(FData->OrderFieldName(), FData->OrderAscending());
        FDataFrame->Process();
    } catch (const EDacMySqlError &error) {
        ShowFetchError(error);
    } catch (...) {
        FDataFrame->SetNullParams();
        FDataFrame->Process();
        throw;
    }
}

/// Holds back what the rows tell the grid until they stand where they are to be seen.
class TTableDataFrame::TQuietRows
{
public:
    explicit TQuietRows(TDataSet &dataset) : FDataset(dataset) { FDataset.DisableControls(); }
    ~TQuietRows() { FDataset.EnableControls(); }
    TQuietRows(const TQuietRows &) = delete;
    TQuietRows &operator=(const TQuietRows &) = delete;

private:
    TDataSet &FDataset;
};

// The same rows with other columns, as with or without texts, leave the user where they were.
TDataSet &TTableDataFrame::ReadPage()
{
    const TPlace place{FData->CurrentPage(), FData->RowsPerPage(), FData->OrderFieldName(),
                       FData->OrderAscending(), FData->WhereCommandText()};
    QStringList keyNames;
    if (const auto table = FindTable(*FManager, FDatabaseName, FTableName))
        table->TryGetRowKey(keyNames);
    const TRecordMark record(FData->Dataset(), keyNames);
    const TQuietRows quiet(FData->Dataset());
    TDataSet &dataset = FData->GetDataset();
    if (place != FPlace)
        FDataFrame->ForgetPlace();
    else if (record.Row() >= 0)
        dataset.SetRecNo(record.Row());
    FPlace = place;
    return dataset;
}

void TTableDataFrame::ShowFetchError(const EDacMySqlError &error)
{
    FControls->ShowError(
        QStringList{TFormat::Format("%s (%d)", {TDbmErrorCodeParser::Parse(error.ErrorCode()),
                                                error.ErrorCode()}),
                    error.ErrorMessage(), "", error.CommandText()}
            .join('\n'));
    FDataFrame->SetNullParams();
    FDataFrame->SetSort({}, true);
    FDataFrame->Process();
}

void TTableDataFrame::ReadFieldKinds()
{
    FFieldKinds.clear();
    const auto read = [this](TDbmFieldList &fields) {
        fields.ForEach([this](TDbmFieldItem &field) {
            FFieldKinds.insert(field.Entity().FieldName,
                               {TFieldItemKinds::KindOf(field.Entity().FieldType.DataType),
                                field.IsText(), field.IsBlob(), field.Entity().ServerText.Type});
        });
    };
    if (const auto table = FindTable(*FManager, FDatabaseName, FTableName))
        read(table->Fields());
    else if (const auto view = FindView(*FManager, FDatabaseName, FTableName))
        read(view->Fields());
}

// Texts, unless they are asked for, and blobs come as their length.
void TTableDataFrame::GetDisplayText(const QString &fieldName, QString &text) const
{
    const TFieldKind kind = FFieldKinds.value(fieldName);
    if (!kind.IsBlob && (!kind.IsText || FData->ShowTextColumns()))
        return;
    bool isLength = false;
    const qint64 length = text.toLongLong(&isLength);
    text = isLength ? TFormat::SizeText(length) : QString("NULL");
}

bool TTableDataFrame::IsActive() const
{
    return FData && !FControls->IsErrorShown() && FDataFrame->Dataset() &&
           FData->Dataset().Active();
}

bool TTableDataFrame::IsTable() const
{
    return FindTable(*FManager, FDatabaseName, FTableName) != nullptr;
}

bool TTableDataFrame::CanEdit() const
{
    if (IsTable())
        return true;
    const auto view = FindView(*FManager, FDatabaseName, FTableName);
    return view && view->Entity().Info.Updatable;
}

bool TTableDataFrame::HasTextFields() const
{
    return std::any_of(FFieldKinds.cbegin(), FFieldKinds.cend(),
                       [](const TFieldKind &kind) { return kind.IsText; });
}

void TTableDataFrame::UpdateUI()
{
    UpdateActions();
    UpdateControls();
    UpdateStatus();
}

void TTableDataFrame::UpdateActions()
{
    const bool active = IsActive();
    const auto table = active ? FindTable(*FManager, FDatabaseName, FTableName) : nullptr;
    const bool hasRows = active && !FData->Dataset().IsEmpty();
    FControls->actEditMode->setEnabled(active && CanEdit());
    FControls->actCreate->setEnabled(table && table->IsTable());
    FControls->actUpdate->setEnabled(table && hasRows);
    FControls->actDelete->setEnabled(table && hasRows);
    FControls->actTruncate->setEnabled(table != nullptr);
    const bool isFirst = !active || FData->CurrentPage() <= 1;
    const bool isLast = !active || FData->CurrentPage() >= FData->PageCount();
    FControls->actFirstPage->setEnabled(!isFirst);
    FControls->actPrevPage->setEnabled(!isFirst);
    FControls->actNextPage->setEnabled(!isLast);
    FControls->actLastPage->setEnabled(!isLast);
    FControls->actShowText->setEnabled(active && HasTextFields());
}

void TTableDataFrame::UpdateControls()
{
    const QScopedValueRollback hold(FDisableProcess, true);
    const bool active = IsActive();
    const auto number = [active](qint64 value) {
        return active ? QString::number(value) : QString();
    };
    FControls->edPageNum->setText(number(active ? FData->CurrentPage() : 0));
    FControls->edPageCount->setText(number(active ? FData->PageCount() : 0));
    FControls->cbxRows->setEditText(number(active ? FData->RowsPerPage() : 0));
    FControls->actShowText->setChecked(active && FData->ShowTextColumns());
}

void TTableDataFrame::UpdateStatus()
{
    FControls->SetStatus(
        IsActive() ? TFormat::Format("Rows: %.0n", {static_cast<double>(FData->RowCount())})
                   : QString());
}

void TTableDataFrame::SetSessionData(const TTableDataSessionData &data)
{
    const QScopedValueRollback hold(FDisableProcess, true);
    ReadFieldKinds();
    FControls->actEditMode->setChecked(data.EditMode && CanEdit());
    FControls->actFilter->setChecked(data.UseFilter);
    FData->SetShowTextColumns(data.ShowTextColumns && HasTextFields());
    FData->SetRowsPerPage(data.RowCount);
    FData->SetCurrentPage(data.CurrentPage);
    FData->SetOrderFieldName(data.SortFieldName);
    FData->SetOrderAscending(data.SoftAscending);
    FDataFilterFrame->SetText(data.WhereCommandText);
    FWhereCommandText = data.WhereCommandText;
}

void TTableDataFrame::GetSessionData(TTableDataSessionData &data) const
{
    data.EditMode = FControls->actEditMode->isChecked();
    data.UseFilter = FControls->actFilter->isChecked();
    data.ShowTextColumns = FData->ShowTextColumns();
    data.RowCount = static_cast<qint32>(FData->RowsPerPage());
    data.CurrentPage = static_cast<qint32>(FData->CurrentPage());
    data.SortFieldName = FData->OrderFieldName();
    data.SoftAscending = FData->OrderAscending();
    data.WhereCommandText = FDataFilterFrame->Text();
}
