#include "tools/uDbmExplainParser.h"

#include "sql/uDatasetUtils.h"
#include "tools/uDatasetWalk.h"

namespace {

struct TTextColumn
{
    const char *Name;
    QString TDbmExplainItem::*Field;
};

const TTextColumn TextColumns[] = {
    {"select_type", &TDbmExplainItem::SelectType},
    {"table", &TDbmExplainItem::Table},
    {"type", &TDbmExplainItem::JoinType},
    {"possible_keys", &TDbmExplainItem::PossibleKeys},
    {"key", &TDbmExplainItem::Key},
    {"key_len", &TDbmExplainItem::KeyLen},
    {"ref", &TDbmExplainItem::RefColumns},
    {"rows", &TDbmExplainItem::Rows},
    {"extra", &TDbmExplainItem::Extra},
};

TDbmExplainItem ReadItem(const TDataSet &dataset)
{
    TDbmExplainItem item;
    item.Id = TDatasetUtils::AsInteger(dataset, "id", 0);
    for (const TTextColumn &column : TextColumns)
        item.*column.Field = TDatasetUtils::AsString(dataset, column.Name, QString());
    return item;
}

} // namespace

QList<TDbmExplainItem> TDbmExplainParser::Parse(TDataSet &dataset)
{
    QList<TDbmExplainItem> items;
    TDatasetWalk(dataset).ForEach([&](TDataSet &row) { items += ReadItem(row); });
    return items;
}
