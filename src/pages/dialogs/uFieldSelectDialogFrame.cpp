#include "pages/dialogs/uFieldSelectDialogFrame.h"

#include "model/uDbmFieldList.h"
#include "widgets/uGridModel.h"
#include "widgets/uGridView.h"

#include <QHeaderView>
#include <QVBoxLayout>

struct TFieldSelectDialogFrame::TItem
{
    QString Name, Type;
    bool Checked = false;
};

class TFieldSelectDialogFrame::TModel : public TGridModel<TItem>
{
public:
    using TGridModel::TGridModel;
};

TFieldSelectDialogFrame::TFieldSelectDialogFrame(QWidget *owner) : TDialogFrame(owner) {}

TFieldSelectDialogFrame::~TFieldSelectDialogFrame() = default;

void TFieldSelectDialogFrame::DoCreate()
{
    lvFields = new TGridView(this);
    lvFields->setObjectName("lvFields");
    lvFields->setAccessibleName("Fields");
    const QFontMetrics metrics(font());
    resize(metrics.averageCharWidth() * 62, metrics.height() * 22);
    auto *column = new QVBoxLayout(this);
    column->addWidget(lvFields);
    connect(lvFields, &TGridView::OnActivated, this, [this](int row) {
        if (FIsSingleSelection && row >= 0)
            Q_EMIT OnProcess();
    });
    connect(lvFields, &TGridView::OnFocusedChanged, this, [this] { UpdateOkButton(); });
}

void TFieldSelectDialogFrame::Initialize(const QString &title, TDbmFieldList &fields)
{
    FTitle = title;
    const TGridColumns<TItem> columns = {
        {.Caption = "",
         .Width = 4,
         .Kind = gkCheck,
         .Checked = [](const TItem &item) { return item.Checked; },
         .SetChecked =
             [this](TItem &item, bool checked) {
                 item.Checked = checked;
                 UpdateOkButton();
             }},
        {.Caption = "Name", .Text = [](const TItem &item) { return item.Name; }, .Width = 28},
        {.Caption = "Type", .Text = [](const TItem &item) { return item.Type; }, .Width = 24}};
    FModel = new TModel(
        columns, [](const TItem &item) { return item.Name; }, lvFields);
    lvFields->setModel(FModel);
    lvFields->header()->setSectionHidden(0, FIsSingleSelection);
    lvFields->RememberLayout("select.fields");
    FItems.clear();
    fields.ForEach([&](TDbmFieldItem &field) {
        const QString name = field.Entity().FieldName;
        if (FExcludedFieldNames.contains(name))
            return;
        auto item = std::make_shared<TItem>();
        item->Name = name;
        item->Type = field.GetTypeDisplayString();
        item->Checked = FSelectedFieldNames.contains(name);
        FItems.push_back(item);
    });
    FModel->SetItems(FItems);
    lvFields->SetFocusedRow(
        qMax(0, FSelectedFieldNames.isEmpty() ? 0 : FModel->RowOfKey(FSelectedFieldNames.first())));
}

void TFieldSelectDialogFrame::UpdateOkButton()
{
    Q_EMIT OnEnableOkButton(FIsSingleSelection ? !GetResultFieldName().isEmpty()
                                               : !GetResultFieldNames().isEmpty());
}

QString TFieldSelectDialogFrame::GetResultFieldName() const
{
    const int row = lvFields->FocusedRow();
    return FModel && row >= 0 ? FModel->KeyOfRow(row) : QString();
}

QStringList TFieldSelectDialogFrame::GetResultFieldNames() const
{
    QStringList names;
    for (const auto &item : FItems)
        if (item->Checked)
            names += item->Name;
    return names;
}
