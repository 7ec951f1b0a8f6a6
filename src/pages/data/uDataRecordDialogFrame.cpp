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
    const bool found = manager.Commands().Data().TrySelectRow(
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
        TVariant &value = FInitialValues[field.Entity.FieldName];
        value = column ? ValueOf(field, *column) : TVariant();
        // A blob shows its size; all of its digits would be twice as much again.
        if (TDbmFieldUtils::IsBlob(field.Entity.FieldType.DataType))
            continue;
        field.Shown = column && !column->IsNull() && !value.IsBytes()
                          ? column->AsString()
                          : TRecordValues::ToText(value);
    }
}

// No bytes and no value are two things in the table, and only one of them here would be lost.
TVariant TDataRecordDialogFrame::ValueOf(const TField &field, const ::TField &column)
{
    const TVariant value = column.Value();
    const bool isBlob = TDbmFieldUtils::IsBlob(field.Entity.FieldType.DataType);
    return isBlob && !value.IsNull() && !value.IsBytes() ? TVariant(column.AsBytes()) : value;
}

void TDataRecordDialogFrame::FillGrid()
{
    FProcessValues = FInitialValues;
    for (const TField &field : FFields)
        AddRow(field);
    connect(vgRecord, &TVerticalGrid::OnRowChanged, this, [this](TVerticalRow *row) {
        if (FFilling)
            return;
        FTyped.insert(row->Name());
        FWholeTexts.remove(row->Name());
    });
}

TVerticalRow &TDataRecordDialogFrame::Row(const TField &field) const
{
    return *vgRecord->Row(field.Entity.FieldName);
}

TRowKind TDataRecordDialogFrame::KindOf(const TDbmFieldEntity &field)
{
    const TDbmFieldDataType type = field.FieldType.DataType;
    switch (type) {
    case fdtBool:
        return rkCheck;
    case fdtEnum:
        return rkFixedCombo;
    case fdtSet:
        return rkSeveral;
    case fdtDate:
        return rkDayText;
    case fdtDateTime:
    case fdtTimeStamp:
        return rkDateText;
    default:
        return TDbmFieldUtils::IsBlob(type)     ? rkReadOnlyButtons
               : TDbmFieldUtils::IsString(type) ? rkTextButton
                                                : rkText;
    }
}

void TDataRecordDialogFrame::AddRow(const TField &field)
{
    const TDbmFieldEntity &entity = field.Entity;
    const TRowKind kind = KindOf(entity);
    TVerticalRow *row = vgRecord->Add(kind, entity.FieldName, entity.FieldName);
    row->SetColor(TAppFieldTypeColors::Color(TFieldItemKinds::KindOf(entity.FieldType.DataType)));
    row->SetHint(entity.Comment.isEmpty() ? field.TypeText : entity.Comment);
    if (kind == rkFixedCombo || kind == rkSeveral)
        SetMembers(field, *row);
    if (kind == rkReadOnlyButtons || kind == rkTextButton) {
        row->SetButtons({EditCaption});
        connect(row, &TVerticalRow::OnButton, this, [this, &field, kind] {
            TGuard::Run([&] { kind == rkTextButton ? EditText(field) : EditBlob(field); });
        });
    }
    ShowValue(field);
}

void TDataRecordDialogFrame::SetMembers(const TField &field, TVerticalRow &row)
{
    QStringList members = TRecordValues::MembersOf(field.Entity.ServerText.Type);
    // An ENUM that once took what it does not know has the empty text for it.
    const TVariant &value = FInitialValues[field.Entity.FieldName];
    if (row.Kind() == rkFixedCombo && value.IsString() && value.ToString().isEmpty() &&
        !members.contains(QString()))
        members.prepend("");
    row.SetValues(members);
}

void TDataRecordDialogFrame::ShowValue(const TField &field)
{
    const QScopedValueRollback hold(FFilling, true);
    const QString &name = field.Entity.FieldName;
    const TVariant &value = FProcessValues[name];
    TVerticalRow &row = Row(field);
    const bool isDefault = FMode == rmCreate && field.Entity.DefaultValue.ValueType != vtValue;
    // A list has NULL to choose, also while there is a value.
    const bool isChoice = row.Kind() == rkFixedCombo && field.Entity.Nullable;
    row.SetWhenEmpty(isDefault && value.IsNull()  ? "CURRENT_TIMESTAMP"
                     : value.IsNull() || isChoice ? "NULL"
                                                  : "");
    if (row.Kind() == rkReadOnlyButtons)
        return row.SetValue(value.IsNull() ? "NULL" : "BLOB: " + TRecordValues::SizeText(value));
    if (value.IsNull()) {
        row.SetReadOnly(false);
        return row.SetValue(QVariant()); // a mark of its own, no text
    }
    if (row.Kind() == rkCheck)
        return row.SetValue(value.ToInt() != 0);
    ShowText(field, TextOf(field));
}

// What a line would cut is shown in part, and changed by its button.
void TDataRecordDialogFrame::ShowText(const TField &field, const QString &text)
{
    const QScopedValueRollback hold(FFilling, true);
    TVerticalRow &row = Row(field);
    row.SetReadOnly(!FitsALine(text));
    if (!FitsALine(text))
        row.SetValue(text.left(100).simplified() + QChar(0x2026));
    else
        row.SetValue(text.isNull() ? QString("") : text); // null is for NULL
}

QString TDataRecordDialogFrame::TextOf(const TField &field) const
{
    const QString &name = field.Entity.FieldName;
    if (FTyped.contains(name))
        return FWholeTexts.contains(name) ? FWholeTexts.value(name) : Row(field).Text();
    const TVariant value = FProcessValues.value(name);
    return value == FInitialValues.value(name) ? field.Shown : TRecordValues::ToText(value);
}

void TDataRecordDialogFrame::EditText(const TField &field)
{
    vgRecord->CommitEdit();
    const QString &name = field.Entity.FieldName;
    const QString before = TextOf(field);
    QString text;
    if (!TAppDialogs::TextEditor(name, before, text) || text == before)
        return;
    FTyped.insert(name);
    FWholeTexts[name] = text;
    ShowText(field, text);
}

void TDataRecordDialogFrame::EditBlob(const TField &field)
{
    TVariant &value = FProcessValues[field.Entity.FieldName];
    const QByteArray before = value.IsBytes() ? value.As<QByteArray>() : QByteArray();
    QByteArray bytes;
    if (!TAppDialogs::BlobEditor(field.Entity.FieldName, before, bytes) || bytes == before)
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
    FWholeTexts.remove(field->Entity.FieldName);
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
    for (const TField &field : FFields)
        if (FTyped.contains(field.Entity.FieldName))
            FProcessValues[field.Entity.FieldName] = TakeRow(field);
}

TVariant TDataRecordDialogFrame::TakeRow(const TField &field) const
{
    const TVerticalRow &row = Row(field);
    const TVariant initial = FInitialValues.value(field.Entity.FieldName);
    // What was touched and taken back is the value that was there, in its own kind.
    if (row.Kind() == rkCheck)
        return !initial.IsNull() && row.IsChecked() == (initial.ToInt() != 0)
                   ? initial
                   : TVariant(row.IsChecked());
    const QString text = TextOf(field);
    if (row.Kind() == rkFixedCombo)
        return text.isNull() ? TVariant() : TVariant(text);
    return text == field.Shown && !initial.IsNull() ? initial
                                                    : TRecordValues::FromText(field.Entity, text);
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
    else if (!names.isEmpty() && commands.ExecuteUpdateRow(FDatabaseName, FTableName, FWhereValues,
                                                           FWhereFields, values, names) == 0)
        throw EException("The record was not changed: it does not exist any more.");
}
