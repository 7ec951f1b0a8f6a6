#include "client/uTableKey.h"

#include "client/uRowsOrigin.h"
#include "support/uFormat.h"

#include <QHash>
#include <QRegularExpression>
#include <algorithm>

namespace {

struct TKey
{
    QString Name;
    QStringList Columns;
    bool Unique = true; // and without NULLs
};

// Where the FROM of the outermost SELECT stands; -1 also when quotes make that hard to tell.
qsizetype OutermostFrom(const QString &sql)
{
    if (!sql.startsWith(u"select ", Qt::CaseInsensitive))
        return -1;
    int depth = 0;
    for (qsizetype i = 0; i >= 0 && i < sql.size(); ++i) {
        const QChar c = sql[i];
        if (c == u'`') {
            i = sql.indexOf(u'`', i + 1);
            if (i < 0)
                return -1;
        } else if (c == u'\'' || c == u'"') {
            return -1;
        } else if (c == u'(' || c == u')') {
            depth += c == u'(' ? 1 : -1;
        } else if (depth == 0 &&
                   QStringView(sql).sliced(i).startsWith(u" from ", Qt::CaseInsensitive)) {
            return i;
        }
    }
    return -1;
}

// A table that stands with its database is none that the statement itself makes: a page of rows
// joins its table to the keys of the page, and a condition may read what it wants.
bool StartsWithTable(const QString &sql, const TFieldInfo &field)
{
    static const QRegularExpression table(
        "\\G from `([^`]+)`\\.`([^`]+)`(?: as (\\w+) join \\(| where | order | limit |$)",
        QRegularExpression::CaseInsensitiveOption);
    const qsizetype from = OutermostFrom(sql);
    if (from < 0)
        return false;
    const QRegularExpressionMatch match = table.match(sql, from);
    const auto same = [&match](int part, const QString &name) {
        return match.captured(part).compare(name, Qt::CaseInsensitive) == 0;
    };
    const int alias = match.capturedLength(3) > 0 ? 3 : 2;
    return match.hasMatch() && same(1, field.Database) && same(2, field.OrgTable) &&
           same(alias, field.Table);
}

bool SameTable(const TFieldInfo &a, const TFieldInfo &b)
{
    return a.Database == b.Database && a.OrgTable == b.OrgTable && a.Table == b.Table;
}

TTableKey TableOf(const std::vector<TFieldInfo> &fields, const QString &sql)
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
    // MariaDB tells a derived table's alias as the name of the original table, and a real table of
    // that name may exist beside it.
    const TRowsOrigin origin = RowsOriginOf(sql);
    if (origin == roSubquery && !StartsWithTable(sql, *table))
        return {.Reason = "The result comes from a subquery."};
    if (origin == roOther)
        return {.Reason = "The result does not come from a SELECT."};
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

QString QuotedText(QString text)
{
    return u'\'' + text.replace(u'\\', "\\\\").replace(u'\'', "''") + u'\'';
}

// The one table that a view shows, and the view's names of its columns; no table when there are
// several or their rows are made of others.
struct TView
{
    TTableKey Table;
    QHash<QString, QString> Columns; // the view's by the table's
};

// The server writes a definition anew in a form of its own: each name quoted, each column
// qualified.
TView ViewOf(const TTableKey::TRows &rows, const TTableKey &view)
{
    const auto found =
        rows("SELECT VIEW_DEFINITION FROM information_schema.VIEWS WHERE TABLE_SCHEMA = " +
             QuotedText(view.Database) + " AND TABLE_NAME = " + QuotedText(view.Table));
    if (found.empty())
        return {};
    const QString &sql = found.front().value(0);
    const qsizetype from = OutermostFrom(sql);
    static const QRegularExpression table(
        "\\G from `([^`]+)`\\.`([^`]+)`(?: `([^`]+)`)?(?: where .*)?$",
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match =
        from < 0 ? QRegularExpressionMatch() : table.match(sql, from);
    if (!match.hasMatch())
        return {};
    static const QRegularExpression column(
        "(?:^select |,)(?:`[^`]+`\\.)?`[^`]+`\\.`([^`]+)` AS `([^`]+)`(?=,|$)",
        QRegularExpression::CaseInsensitiveOption);
    TView result{.Table = {.Database = match.captured(1), .Table = match.captured(2)},
                 .Columns = {}};
    const QString columns = sql.left(from);
    for (auto all = column.globalMatch(columns); all.hasNext();) {
        const QRegularExpressionMatch one = all.next();
        result.Columns.insert(one.captured(1), one.captured(2));
    }
    return result;
}

// A view has no keys of its own; a row of it is found by the key of the table behind it.
std::vector<TKey> KeysOf(const TTableKey::TRows &rows, const TTableKey &table, int depth = 0)
{
    constexpr int DeepestView = 8;
    std::vector<TKey> keys = UniqueKeys(rows, table);
    if (!keys.empty() || depth == DeepestView)
        return keys;
    const TView view = ViewOf(rows, table);
    if (view.Table.Table.isEmpty())
        return keys;
    keys = KeysOf(rows, view.Table, depth + 1);
    std::erase_if(keys, [&view](const TKey &key) {
        return !std::all_of(key.Columns.begin(), key.Columns.end(),
                            [&view](const QString &name) { return view.Columns.contains(name); });
    });
    for (TKey &key : keys)
        for (QString &name : key.Columns)
            name = view.Columns.value(name);
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
    TTableKey table = TableOf(fields, sql);
    if (!table.Reason.isEmpty())
        return table;
    const std::vector<TKey> keys = KeysOf(rows, table);
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
