#include "pages/dialogs/uSelectDialogFrame.h"

#include "widgets/uGridView.h"

#include <QAction>
#include <QHeaderView>
#include <QVBoxLayout>

namespace {

struct TItem
{
    QString Name;
};

using TModel = TGridModel<TItem>;

const TGridColumns<TItem> &Columns()
{
    static const TGridColumns<TItem> columns = {
        {.Caption = "Name", .Text = [](const TItem &item) { return item.Name; }, .Width = 48}};
    return columns;
}

} // namespace

void TSelectDialogFrame::DoCreate()
{
    lvList = new TGridView(this);
    lvList->setObjectName("lvList");
    lvList->setAccessibleName("Name");
    lvList->setModel(new TModel(Columns(), {}, lvList));
    lvList->setHeaderHidden(true);
    lvList->header()->setStretchLastSection(true);
    const QFontMetrics metrics(font());
    resize(metrics.averageCharWidth() * 58, metrics.height() * 20);
    auto *column = new QVBoxLayout(this);
    column->addWidget(lvList);
    auto *actProcess = new QAction("Select", this);
    actProcess->setObjectName("actProcess");
    addAction(actProcess);
    connect(actProcess, &QAction::triggered, this, [this] {
        if (lvList->FocusedRow() >= 0)
            Q_EMIT OnProcess();
    });
    connect(lvList, &TGridView::OnActivated, actProcess, &QAction::trigger);
    connect(lvList, &TGridView::OnFocusedChanged, this,
            [this](int row) { Q_EMIT OnEnableOkButton(row >= 0); });
}

void TSelectDialogFrame::SetParams(const QString &title, const QStringList &names,
                                   const QString &selected)
{
    FTitle = title;
    std::vector<TItem> items;
    for (const QString &name : names)
        items.push_back({name});
    auto *model = static_cast<TModel *>(lvList->model());
    model->SetValues(std::move(items));
    lvList->SetFocusedRow(
        std::max(selected.isEmpty() ? 0 : model->RowOfKey(selected), names.isEmpty() ? -1 : 0));
}

void TSelectDialogFrame::DoPrepare()
{
    Q_EMIT OnEnableOkButton(lvList->FocusedRow() >= 0);
}

QString TSelectDialogFrame::GetResultName() const
{
    const auto item = static_cast<TModel *>(lvList->model())->ItemAt(lvList->FocusedRow());
    return item ? item->Name : QString();
}
