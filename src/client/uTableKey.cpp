#include "client/uTableKey.h"

#include "support/uFormat.h"

#include <QRegularExpression>
#include <algorithm>

namespace {

struct TKey
{
    QString Name;
    QStringList Columns;
    bool Unique = true; // and without NULLs
};

// MariaDB tells a derived table's alias as the name of the original table, and a real table of that
// name may exist beside it.
bool HasDerivedTable(const QString &sql)
{
    static const QString blank = R"((\s|/\*.*?\*/|--[^\n]*\n|#[^\n]*\n)*)";
    static const QRegularExpression derived(
        "^\\s*with\\b|(\\bfrom|\\bjoin|\\blateral|\\bfrom\\b[^()]*,)" + blank + "(\\(" + blank +
            ")+(select|values|table|with)\\b",
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    return derived.match(sql).hasMatch();
}

bool SameTable(const TFieldInfo &a, const TFieldInfo &b)
{
    return a.Database == b.Database && a.OrgTable == b.OrgTable && a.Table == b.Table;
}

TTableKey TableOf(const std::vector<TFieldInfo> &fields)
{
    const TFieldInfo *table = nullptr;
    for (const TFieldInfo &field : fields) {
        if (field.OrgTable.isEmpty() || field.OrgName.isEmpty())
            continue;
        if (table && !SameTable(*table, field))
            return {.Reason = "The result shows more than one table."};
        table = &field;
    }
    // What SHOW answers looks like tables of that schema, and nothing in it can be changed.
    if (!table || table->Database.isEmpty() ||
        table->Database.compare(u"information_schema", Qt::CaseInsensitive) == 0)
        return {.Reason = "The result does not show a table."};
    return {.Database = table->Database, .Table = table->OrgTable};
}

// Columns of SHOW KEYS: 1 Non_unique, 2 Key_name, 4 Column_name, 9 Null. A functional part of a key
// has no column name.
std::vector<TKey> UniqueKeys(const TTableKey::TRows &rows, const TTableKey &table)
{
    std::vector<TKey> keys;
    const QString sql = "SHOW KEYS FROM " + QuotedIdentifier(table.Table) + " FROM " +
                        QuotedIdentifier(table.Database);
    for (const QStringList &row : rows(sql)) {
        if (keys.empty() || keys.back().Name != row.at(2))
            keys.push_back({.Name = row.at(2)});
        TKey &key = keys.back();
        key.Columns += row.at(4);
        key.Unique = key.Unique && row.at(1) == u"0" && !row.at(4).isEmpty() && row.at(9) != u"YES";
    }
    std::erase_if(keys, [](const TKey &key) { return !key.Unique; });
    std::stable_partition(keys.begin(), keys.end(),
                          [](const TKey &key) { return key.Name == u"PRIMARY"; });
    return keys;
}

int ColumnOf(const std::vector<TFieldInfo> &fields, const QString &name)
{
    const auto found = std::find_if(fields.begin(), fields.end(), [&name](const TFieldInfo &field) {
        return field.OrgName.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == fields.end() ? -1 : static_cast<int>(found - fields.begin());
}

QString TryKey(const std::vector<TFieldInfo> &fields, const TKey &key, TTableKey &table)
{
    table.Columns.clear();
    for (const QString &name : key.Columns) {
        const int column = ColumnOf(fields, name);
        if (column < 0)
            return TFormat::Format("The result does not show the key column \"%s\" of \"%s\".",
                                   {name, table.Table});
        if (fields[static_cast<size_t>(column)].IsSinglePrecision())
            return TFormat::Format(
                "The key column \"%s\" of \"%s\" is a FLOAT, by which no row can "
                "be found exactly.",
                {name, table.Table});
        table.Columns += column;
    }
    return {};
}

} // namespace

QString QuotedIdentifier(const QString &name)
{
    return u'`' + QString(name).replace(u'`', QStringLiteral("``")) + u'`';
}

TTableKey TTableKey::Find(const TRows &rows, const std::vector<TFieldInfo> &fields,
                          const QString &sql)
{
    TTableKey table = TableOf(fields);
    if (!table.Reason.isEmpty())
        return table;
    if (HasDerivedTable(sql)) {
        table.Reason = "The result comes from a subquery.";
        return table;
    }
    const std::vector<TKey> keys = UniqueKeys(rows, table);
    table.Reason = TFormat::Format("\"%s\" has no primary key and no unique key without NULLs.",
                                   {table.Table});
    for (auto key = keys.begin(); key != keys.end(); ++key) {
        const QString reason = TryKey(fields, *key, table);
        if (reason.isEmpty()) {
            table.Reason.clear();
            return table;
        }
        if (key == keys.begin())
            table.Reason = reason;
    }
    return table;
}
