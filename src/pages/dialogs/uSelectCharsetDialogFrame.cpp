#include "pages/dialogs/uSelectCharsetDialogFrame.h"

#include "model/uDbmManager.h"
#include "widgets/uGridView.h"

#include <QVBoxLayout>

namespace {

using TItem = TDbmCharsetEntity;
using TModel = TGridModel<TItem>;

const TGridColumns<TItem> &Columns()
{
    static const TGridColumns<TItem> columns = {
        {.Caption = "Name",
         .Text = [](const TItem &item) { return item.Name; },
         .Width = 16,
         .Sort = gsAscending},
        {.Caption = "Description",
         .Text = [](const TItem &item) { return item.Description; },
         .Width = 44}};
    return columns;
}

} // namespace

void TSelectCharsetDialogFrame::DoCreate()
{
    lvCharsets = new TGridView(this);
    lvCharsets->setObjectName("lvCharsets");
    lvCharsets->setAccessibleName("Charsets");
    lvCharsets->setModel(new TModel(Columns(), {}, lvCharsets));
    lvCharsets->RememberLayout("select.charset");
    const QFontMetrics metrics(font());
    resize(metrics.averageCharWidth() * 70, metrics.height() * 24);
    auto *column = new QVBoxLayout(this);
    column->addWidget(lvCharsets);
    connect(lvCharsets, &TGridView::OnActivated, this, [this](int row) {
        if (row >= 0)
            Q_EMIT OnProcess();
    });
    connect(lvCharsets, &TGridView::OnFocusedChanged, this,
            [this](int row) { Q_EMIT OnEnableOkButton(row >= 0); });
}

void TSelectCharsetDialogFrame::Initialize(TDbmManager &manager)
{
    std::vector<TItem> items;
    manager.Charsets().ForEach([&](TDbmCharsetItem &item) { items.push_back(item.Entity()); });
    auto *model = static_cast<TModel *>(lvCharsets->model());
    model->SetValues(std::move(items));
    QString current;
    manager.Commands().Charsets().ExecuteGetSessionCharset(current);
    lvCharsets->SetFocusedRow(model->RowOfKey(current));
}

void TSelectCharsetDialogFrame::DoPrepare()
{
    Q_EMIT OnEnableOkButton(lvCharsets->FocusedRow() >= 0);
}

QString TSelectCharsetDialogFrame::GetResultName() const
{
    const auto item = static_cast<TModel *>(lvCharsets->model())->ItemAt(lvCharsets->FocusedRow());
    return item ? item->Name : QString();
}
