#include "pages/query/uQueryExplainFrame.h"

#include "client/uDataSet.h"
#include "tools/uDbmExplainParser.h"
#include "widgets/uGridView.h"

#include <QVBoxLayout>

namespace {

using TItem = TDbmExplainItem;

// Row counts arrive as text; as text "9" would follow "10".
TGridValue RowsValue(const TItem &item)
{
    bool ok = false;
    const double rows = item.Rows.toDouble(&ok);
    return ok ? TGridValue(rows) : TGridValue(item.Rows);
}

const TGridColumns<TItem> &Columns()
{
    static const TGridColumns<TItem> columns = {
        {.Caption = "ID",
         .Text = [](const TItem &item) { return QString::number(item.Id); },
         .SortValue = [](const TItem &item) { return TGridValue(item.Id); },
         .Align = Qt::AlignRight,
         .Sort = gsAscending},
        {.Caption = "Type of SELECT", .Text = [](const TItem &item) { return item.SelectType; }},
        {.Caption = "Table", .Text = [](const TItem &item) { return item.Table; }},
        {.Caption = "Join type", .Text = [](const TItem &item) { return item.JoinType; }},
        {.Caption = "Possible keys", .Text = [](const TItem &item) { return item.PossibleKeys; }},
        {.Caption = "Use key", .Text = [](const TItem &item) { return item.Key; }},
        {.Caption = "Key length", .Text = [](const TItem &item) { return item.KeyLen; }},
        {.Caption = "Ref. columns", .Text = [](const TItem &item) { return item.RefColumns; }},
        {.Caption = "Rows",
         .Text = [](const TItem &item) { return item.Rows; },
         .SortValue = RowsValue,
         .Align = Qt::AlignRight},
        {.Caption = "Extra", .Text = [](const TItem &item) { return item.Extra; }},
    };
    return columns;
}

} // namespace

TQueryExplainFrame::TQueryExplainFrame(QWidget *owner) : TBaseFrame(owner) {}

void TQueryExplainFrame::DoCreate()
{
    lvExplain = new TGridView(this);
    lvExplain->setObjectName("lvExplain");
    lvExplain->setAccessibleName("Explain");
    lvExplain->setModel(new TGridModel<TItem>(Columns(), {}, lvExplain));
    lvExplain->RememberLayout("query.explain");
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(lvExplain);
    setFocusProxy(lvExplain);
}

void TQueryExplainFrame::Process()
{
    auto *model = static_cast<TGridModel<TItem> *>(lvExplain->model());
    std::vector<TItem> items;
    if (FDataset && FDataset->Active())
        for (const TItem &item : TDbmExplainParser::Parse(*FDataset))
            items.push_back(item);
    model->SetValues(std::move(items));
}
