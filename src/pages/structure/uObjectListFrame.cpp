#include "pages/structure/uObjectListFrame.h"

#include "widgets/uGridView.h"
#include "widgets/uIcons.h"
#include "widgets/uToolBar.h"

#include <QAction>
#include <QHeaderView>
#include <QVBoxLayout>

namespace {

using TModel = TGridModel<TObjectListRow>;

TGridColumn<TObjectListRow> MakeColumn(const TObjectListColumn &column, size_t index)
{
    const auto cell = [index](const TObjectListRow &row) -> const TObjectListRow::TCell & {
        static const TObjectListRow::TCell none;
        return index < row.Cells.size() ? row.Cells[index] : none;
    };
    return {.Caption = column.Caption,
            .Hint = column.Hint,
            .Text = [cell](const TObjectListRow &row) { return cell(row).Text; },
            .SortValue = [cell](const TObjectListRow &row) { return cell(row).SortValue; },
            .Align = column.Align,
            .Kind = column.Kind,
            .Sort = column.Sort,
            .Color = [](const TObjectListRow &row) { return row.Color; },
            .Checked = [cell](const TObjectListRow &row) { return cell(row).Checked; }};
}

} // namespace

void TObjectListFrame::DoCreate()
{
    TBaseFrame::DoCreate();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    FToolBar = new TToolBar(this, "tbrList");
    lvList = new TGridView(this);
    lvList->setObjectName("lvList");
    column->addWidget(FToolBar);
    column->addWidget(lvList, 1);
    setFocusProxy(lvList);
    connect(lvList, &TGridView::OnFocusedChanged, this, &TObjectListFrame::OnFocusedChanged);
}

void TObjectListFrame::SetColumns(const std::vector<TObjectListColumn> &columns,
                                  const QString &layoutKey)
{
    TGridColumns<TObjectListRow> made;
    for (size_t i = 0; i < columns.size(); ++i)
        made.push_back(MakeColumn(columns[i], i));
    lvList->setModel(new TModel(
        std::move(made), [](const TObjectListRow &row) { return row.Name; }, lvList));
    lvList->RememberLayout(layoutKey);
}

void TObjectListFrame::SetColumnVisible(int column, bool visible)
{
    lvList->setColumnHidden(column, !visible);
}

void TObjectListFrame::SetRows(std::vector<TObjectListRow> rows)
{
    static_cast<TModel *>(lvList->model())->SetValues(std::move(rows));
    Q_EMIT OnFocusedChanged();
}

QString TObjectListFrame::FocusedName() const
{
    const auto row = static_cast<TModel *>(lvList->model())->ItemAt(lvList->FocusedRow());
    return row ? row->Name : QString();
}

QAction *TObjectListFrame::AddAction(const char *name, const QString &caption, const QString &hint,
                                     const char *icon)
{
    auto *action = new QAction(caption, this);
    action->setObjectName(name);
    if (*icon)
        action->setIcon(TIcons::Icon(icon));
    if (!hint.isEmpty())
        action->setToolTip(hint);
    FToolBar->addAction(action);
    lvList->addAction(action);
    return action;
}

void TObjectListFrame::AddSeparator()
{
    FToolBar->addSeparator();
    auto *separator = new QAction(lvList);
    separator->setSeparator(true);
    lvList->addAction(separator);
}

void TObjectListFrame::HideToolBar()
{
    FToolBar->hide();
}

int TObjectListFrame::HeightOfRows(int atLeast) const
{
    const QAbstractItemModel *model = lvList->model();
    const int rows = model ? model->rowCount() : 0;
    const int rowHeight = std::max(lvList->sizeHintForRow(0), lvList->fontMetrics().height());
    return FToolBar->sizeHint().height() + lvList->header()->sizeHint().height() +
           2 * lvList->frameWidth() + rowHeight * std::max(rows, atLeast);
}
