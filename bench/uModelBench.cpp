#include "model/uDbmFieldList.h"
#include "model/uDbmIndexList.h"
#include "model/uDbmManager.h"
#include "model/uDbmReferenceList.h"
#include "model/uDbmTableList.h"
#include "uBench.h"
#include "uBenchRows.h"

#include <mysql.h>

namespace {

constexpr int Tables = 5000;
constexpr int Items = 50000;
const QString Database = QStringLiteral("bench_model");

void Query(st_mysql *session, const QString &sql)
{
    const QByteArray text = sql.toUtf8();
    if (mysql_real_query(session, text.constData(), static_cast<unsigned long>(text.size())))
        qFatal("%s", mysql_error(session));
}

/// Runs the statement and looks at each row, as little as a client can do.
void Bare(st_mysql *session, const QString &sql)
{
    Query(session, sql);
    MYSQL_RES *rows = mysql_use_result(session);
    while (mysql_fetch_row(rows)) {
    }
    mysql_free_result(rows);
}

QString TableName(int number)
{
    return "table_" + QString::number(number).rightJustified(4, u'0');
}

void Prepare()
{
    static bool ready = false;
    if (std::exchange(ready, true))
        return;
    st_mysql *session = TBenchRows::Connect(nullptr);
    Query(session, "CREATE DATABASE IF NOT EXISTS " + Database);
    Query(session, "CREATE TABLE IF NOT EXISTS " + Database +
                       ".parent (id int PRIMARY KEY, b int, KEY (b))");
    for (int i = 1; i < Tables; ++i)
        Query(
            session,
            "CREATE TABLE IF NOT EXISTS " + Database + '.' + TableName(i) +
                " (id int AUTO_INCREMENT PRIMARY KEY, name varchar(50) NOT NULL, parent int, "
                "price decimal(10,2), made datetime, note text, kind enum('a','b'), KEY k (name), "
                "UNIQUE KEY u (price, made), CONSTRAINT fk" +
                QString::number(i) + " FOREIGN KEY (parent) REFERENCES parent (id))");
    mysql_close(session);
}

TDbmTableList &TablesOf(TDbmManager &manager)
{
    return manager.Databases().GetByName(Database)->Tables();
}

double ListTables()
{
    const auto manager = TBenchRows::ConnectManager();
    TDbmTableList &tables = TablesOf(*manager);
    return TBench::Seconds([&] { tables.Count(); });
}

double ListTablesBare()
{
    st_mysql *session = TBenchRows::Connect(nullptr);
    const double seconds = TBench::Seconds([&] {
        Bare(session, "SELECT * FROM information_schema.tables WHERE table_schema = '" + Database +
                          "' AND table_type != 'VIEW'");
    });
    mysql_close(session);
    return seconds;
}

double ReadColumns()
{
    const auto manager = TBenchRows::ConnectManager();
    TDbmTableList &tables = TablesOf(*manager);
    tables.Count();
    return TBench::Seconds(
        [&] { tables.ForEach([](TDbmTableItem &table) { table.Fields().Count(); }); });
}

double ReadColumnsBare()
{
    st_mysql *session = TBenchRows::Connect(nullptr);
    const double seconds = TBench::Seconds([&] {
        for (int i = 0; i < Tables; ++i)
            Bare(session, "SELECT * FROM information_schema.columns WHERE table_schema = '" +
                              Database + "' AND table_name = '" +
                              (i == 0 ? QString("parent") : TableName(i)) + '\'');
    });
    mysql_close(session);
    return seconds;
}

double ReadKeys(bool parse)
{
    const auto manager = TBenchRows::ConnectManager();
    TDbmTableList &tables = TablesOf(*manager);
    tables.Count();
    const double fetch = TBench::Seconds(
        [&] { tables.ForEach([](TDbmTableItem &table) { table.DDL().GetValue(); }); });
    if (!parse)
        return fetch;
    return TBench::Seconds([&] {
        tables.ForEach([](TDbmTableItem &table) {
            table.Indexes().ForEach([](TDbmIndexItem &index) { index.Columns().Count(); });
            table.References().ForEach(
                [](TDbmReferenceItem &reference) { reference.Columns().Count(); });
        });
    });
}

/// A list of as many items as asked for, without a server.
class TBenchList
    : public TDbmNamedList<TDbmCharsetItem, TDbmCharsetEntity, &TDbmCharsetEntity::Name>
{
public:
    explicit TBenchList(TDbmElement *owner) : TDbmNamedList(owner) {}

protected:
    QList<TDbmCharsetEntity> SelectEntities() override
    {
        QList<TDbmCharsetEntity> entities;
        for (int i = 0; i < Items; ++i) {
            TDbmCharsetEntity entity;
            entity.Name = "item " + QString::number(i);
            entities.append(entity);
        }
        return entities;
    }
};

double LoadItems(bool again)
{
    const auto manager = TDbmManager::Create();
    const auto list = TDbmElement::New<TBenchList>(manager.get());
    const double first = TBench::Seconds([&] { list->Count(); });
    if (!again)
        return first;
    list->RequestProcess();
    return TBench::Seconds([&] { list->Count(); });
}

const TBenchRegistrar Rows([] {
    return std::vector<TBenchRow>{
        {.What = "list of 5,000 tables, from stale to filled",
         .PeerName = "the server's own time for the statement",
         .Unit = "s",
         .Limit = 1.15,
         .Product = ListTables,
         .Peer = ListTablesBare,
         .Prepare = Prepare},
        {.What = "all columns of 5,000 tables through their items, one by one",
         .PeerName = "the same statements bare",
         .Unit = "s",
         .Limit = 1 / 0.85, // a share of 15 % of the whole
         .Product = ReadColumns,
         .Peer = ReadColumnsBare,
         .Prepare = Prepare,
         .Rounds = 5},
        {.What = "all index and key lists of 5,000 tables from their texts",
         .PeerName = "fetching those texts",
         .Unit = "s",
         .Limit = 1,
         .Product = [] { return ReadKeys(true); },
         .Peer = [] { return ReadKeys(false); },
         .Prepare = Prepare,
         .Rounds = 3},
        {.What = "reload of a loaded list of 50,000 items, identity kept",
         .PeerName = "its first load",
         .Unit = "s",
         .Limit = 1.2,
         .Product = [] { return LoadItems(true); },
         .Peer = [] { return LoadItems(false); }},
    };
});

} // namespace

void TBenchRows::PrepareTables()
{
    ::Prepare();
}
