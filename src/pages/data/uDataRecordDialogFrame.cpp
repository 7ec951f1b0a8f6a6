#include "pages/data/uDataRecordDialogFrame.h"

#include "client/uDataSet.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "model/uDbmViewList.h"
#include "pages/data/uFieldItemKinds.h"
#include "pages/data/uRecordValues.h"
#include "shell/uAppDialogs.h"
#include "shell/uGuard.h"
#include "sql/uDbmFieldUtils.h"
#include "support/uException.h"
#include "support/uFormat.h"
#include "widgets/uStylePalette.h"
#include "widgets/uVerticalGrid.h"

#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QScopedValueRollback>
#include <QStatusBar>
#include <QVBoxLayout>

namespace {

const QString EditCaption = QStringLiteral(" edit ");
// What is longer, or has several lines, is edited in an editor; a line would cut it.
constexpr int MaximumLine = 10'000; // characters

bool FitsALine(const QString &text)
{
    return text.size() <= MaximumLine && !text.contains(u'\n') && !text.contains(u'\r') &&
           !text.contains(QChar::Null);
}

bool IsLongText(const TDbmFieldEntity &field)
{
    const TDbmFieldDataType type = field.FieldType.DataType;
    return TDbmFieldUtils::IsString(type) && !TDbmFieldUtils::HaveValues(type);
}

} // namespace

void TDataRecordDialogFrame::DoCreate()
{
    auto *group = new QGroupBox("Columns", this);
    vgRecord = new TVerticalGrid(group);
    vgRecord->setObjectName("vgRecord");
    (new QVBoxLayout(group))->addWidget(vgRecord);
    auto *statusBar = new QStatusBar(this);
    statusBar->setSizeGripEnabled(false);
    labType = new QLabel(statusBar);
    labType->setObjectName("labType");
    labType->setTextFormat(Qt::PlainText);
    labType->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    statusBar->addWidget(labType, 1);
    auto *column = new QVBoxLayout(this);
    column->addWidget(group, 1);
    column->addWidget(statusBar);
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 34);

    auto *actSetNull = new QAction("Set NULL", this);
    actSetNull->setObjectName("actSetNull");
    actSetNull->setShortcut(QKeySequence("Ctrl+0"));
    addAction(actSetNull);
    vgRecord->addAction(actSetNull);
    vgRecord->setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(actSetNull, &QAction::triggered, this, &TDataRecordDialogFrame::SetNull);
    connect(vgRecord, &TVerticalGrid::OnFocusedRowChanged, this,
            &TDataRecordDialogFrame::ShowFocusedType);
}

void TDataRecordDialogFrame::DoGetTitle(QString &title) const
{
    title = FMode == rmCreate ? "Create Record" : FMode == rmUpdate ? "Update Record" : "";
}

void TDataRecordDialogFrame::DoGetOkButtonTitle(QString &title) const
{
    title = FMode == rmCreate ? "Append" : FMode == rmUpdate ? "Update" : "Close";
}

void TDataRecordDialogFrame::Initialize(TDbmManager &manager, const QString &databaseName,
                                        const QString &tableName)
{
    FManager = &manager;
    FDatabaseName = databaseName;
    FTableName = tableName;
    std::shared_ptr<TDbmTableItem> table;
    std::shared_ptr<TDbmViewItem> view;
    if (manager.TryGetTable(databaseName, tableName, table))
        ReadFields(table->Fields());
    else if (manager.TryGetView(databaseName, tableName, view))
        ReadFields(view->Fields());
    else
        throw EException(
            TFormat::Format("Table \"%s.%s\" is not found.", {databaseName, tableName}));
}

void TDataRecordDialogFrame::ReadFields(TDbmFieldList &fields)
{
    fields.ForEach([this](TDbmFieldItem &field) {
        FFields.push_back({field.Entity(), field.GetTypeDisplayString(), {}});
    });
}

void TDataRecordDialogFrame::InitializeCreate(TDbmManager &manager, const QString &databaseName,
                                              const QString &tableName)
{
    Initialize(manager, databaseName, tableName);
    FMode = rmCreate;
    for (TField &field : FFields) {
        const TDbmValue &def = field.Entity.DefaultValue;
        FInitialValues[field.Entity.FieldName] = def.ValueType == vtValue ? def.Value : TVariant();
        field.Shown = TRecordValues::ToText(FInitialValues[field.Entity.FieldName]);
    }
    FillGrid();
}

void TDataRecordDialogFrame::InitializeUpdate(TDbmManager &manager, const QString &databaseName,
                                              const QString &tableName,
                                              const QStringList &whereFields,
                                              const TVariantList &whereValues)
{
    Initialize(manager, databaseName, tableName);
    FMode = rmUpdate;
    FWhereFields = whereFields;
    FWhereValues = whereValues;
    const bool found = manager.Commands().Data().ExecuteSelectRow(
        databaseName, tableName,
        [this](const TDataSet &row) {
            TakeRow(row);
            return true;
        },
        whereValues, whereFields);
    if (!found)
        throw EException("The record is not found: it was changed or deleted meanwhile.");
    FillGrid();
}

void TDataRecordDialogFrame::TakeRow(const TDataSet &row)
{
    for (TField &field : FFields) {
        const ::TField *column = row.FindField(field.Entity.FieldName);
        FInitialValues[field.Entity.FieldName] = column ? column->Value() : TVariant();
        if (column && !column->IsNull() && !FInitialValues[field.Entity.FieldName].IsBytes())
            field.Shown = column->AsString();
        else
            field.Shown = TRecordValues::ToText(FInitialValues[field.Entity.FieldName]);
    }
}

void TDataRecordDialogFrame::FillGrid()
{
    FProcessValues = FInitialValues;
    for (const TField &field : FFields)
        AddRow(field);
    connect(vgRecord, &TVerticalGrid::OnRowChanged, this, [this](TVerticalRow *row) {
        if (!FFilling)
            FTyped.insert(row->Name());
    });
}

TVerticalRow &TDataRecordDialogFrame::Row(const TField &field) const
{
    return *vgRecord->Row(field.Entity.FieldName);
}

void TDataRecordDialogFrame::AddRow(const TField &field)
{
    const TDbmFieldEntity &entity = field.Entity;
    const TDbmFieldDataType type = entity.FieldType.DataType;
    TRowKind kind = rkText;
    if (TDbmFieldUtils::IsBlob(type))
        kind = rkReadOnlyButtons;
    else if (TDbmFieldUtils::IsBoolean(type))
        kind = rkCheck;
    else if (type == fdtEnum)
        kind = rkFixedCombo;
    else if (IsLongText(entity))
        kind = rkTextButton;
    TVerticalRow *row = vgRecord->Add(kind, entity.FieldName, entity.FieldName);
    row->SetColor(TAppFieldTypeColors::Color(TFieldItemKinds::KindOf(type)));
    row->SetHint(entity.Comment.isEmpty() ? field.TypeText : entity.Comment);
    if (kind == rkFixedCombo)
        row->SetValues(entity.FieldType.Values);
    if (kind == rkReadOnlyButtons || kind == rkTextButton) {
        row->SetButtons({EditCaption});
        connect(row, &TVerticalRow::OnButton, this, [this, &field, kind] {
            TGuard::Run([&] { kind == rkTextButton ? EditText(field) : EditBlob(field); });
        });
    }
    ShowValue(field);
}

void TDataRecordDialogFrame::ShowValue(const TField &field)
{
    const QScopedValueRollback hold(FFilling, true);
    const QString &name = field.Entity.FieldName;
    const TVariant &value = FProcessValues[name];
    TVerticalRow &row = Row(field);
    const bool isDefault = FMode == rmCreate && field.Entity.DefaultValue.ValueType != vtValue;
    row.SetWhenEmpty(value.IsNull() ? (isDefault ? "CURRENT_TIMESTAMP" : "NULL") : "");
    if (TDbmFieldUtils::IsBlob(field.Entity.FieldType.DataType)) {
        row.SetValue(value.IsNull() ? "NULL" : "BLOB: " + TRecordValues::SizeText(value));
        return;
    }
    if (row.Kind() == rkCheck) {
        row.SetValue(value.ToInt() != 0);
        return;
    }
    const bool isInitial = value == FInitialValues[name];
    const QString text = isInitial ? field.Shown : TRecordValues::ToText(value);
    row.SetReadOnly(!FitsALine(text));
    row.SetValue(FitsALine(text) ? text : text.left(100).simplified() + QChar(0x2026));
}

void TDataRecordDialogFrame::EditText(const TField &field)
{
    vgRecord->CommitEdit();
    const QString &name = field.Entity.FieldName;
    const QString before =
        FTyped.contains(name) ? Row(field).Text() : TRecordValues::ToText(FProcessValues[name]);
    QString text;
    if (!TAppDialogs::TextEditor(name, before, text) || text == before)
        return;
    FTyped.remove(name);
    FProcessValues[name] = text;
    ShowValue(field);
}

void TDataRecordDialogFrame::EditBlob(const TField &field)
{
    TVariant &value = FProcessValues[field.Entity.FieldName];
    QByteArray bytes;
    if (!TAppDialogs::BlobEditor(field.Entity.FieldName,
                                 value.IsBytes() ? value.As<QByteArray>() : QByteArray(), bytes))
        return;
    value = bytes.isEmpty() ? TVariant() : TVariant(bytes);
    ShowValue(field);
}

const TDataRecordDialogFrame::TField *TDataRecordDialogFrame::FocusedField() const
{
    const TVerticalRow *row = vgRecord->FocusedRow();
    for (const TField &field : FFields)
        if (row && field.Entity.FieldName == row->Name())
            return &field;
    return nullptr;
}

void TDataRecordDialogFrame::SetNull()
{
    const TField *field = FocusedField();
    if (!field)
        return;
    Row(*field).Revert();
    FTyped.remove(field->Entity.FieldName);
    FProcessValues[field->Entity.FieldName] = TVariant();
    ShowValue(*field);
}

void TDataRecordDialogFrame::ShowFocusedType()
{
    const TField *field = FocusedField();
    labType->setText(field ? field->TypeText : QString());
}

void TDataRecordDialogFrame::TakeRows()
{
    vgRecord->CommitEdit();
    for (const TField &field : FFields) {
        const QString &name = field.Entity.FieldName;
        if (!FTyped.contains(name))
            continue;
        if (Row(field).Kind() == rkCheck)
            FProcessValues[name] = Row(field).IsChecked();
        else if (Row(field).Text() == field.Shown && !FInitialValues[name].IsNull())
            FProcessValues[name] = FInitialValues[name]; // typed and taken back
        else
            FProcessValues[name] = TRecordValues::FromText(field.Entity, Row(field).Text());
    }
}

void TDataRecordDialogFrame::GetEditedValues(QStringList &names, TVariantList &values)
{
    TakeRows();
    for (const TField &field : FFields) {
        const QString &name = field.Entity.FieldName;
        if (FProcessValues[name] == FInitialValues[name])
            continue;
        names.append(name);
        values.append(FProcessValues[name]);
    }
}

void TDataRecordDialogFrame::DoProcess()
{
    QStringList names;
    TVariantList values;
    GetEditedValues(names, values);
    TDbmDataCommands &commands = FManager->Commands().Data();
    if (FMode == rmCreate)
        commands.ExecuteInsertRow(FDatabaseName, FTableName, values, names);
    else if (!names.isEmpty())
        commands.ExecuteUpdateRow(FDatabaseName, FTableName, FWhereValues, FWhereFields, values,
                                  names);
}
