#include "tools/uDbmExplainParser.h"

#include "uToolsTest.h"

namespace {

using TDbmExplainParserTest = TToolsTest;

TEST_F(TDbmExplainParserTest, ReadsThePlanOfAServer)
{
    Exec("CREATE TABLE a (id INT PRIMARY KEY, b_id INT, KEY by_b (b_id))");
    Exec("CREATE TABLE b (id INT PRIMARY KEY)");
    Exec("INSERT INTO a SELECT seq, seq % 10 FROM seq_1_to_100");
    Exec("INSERT INTO b SELECT seq FROM seq_0_to_9");
    const QString plan = "EXPLAIN SELECT COUNT(*) FROM b JOIN a ON a.b_id = b.id "
                         "UNION ALL SELECT 1 FROM a";
    const QList<QStringList> expected = Rows(plan); // in the server's order of columns
    const auto query = Open(plan);
    const QList<TDbmExplainItem> items = TDbmExplainParser::Parse(*query);
    ASSERT_EQ(items.size(), expected.size());
    ASSERT_GE(items.size(), 3);
    for (qsizetype i = 0; i < items.size(); ++i) {
        const TDbmExplainItem &item = items[i];
        EXPECT_EQ(item.Id, expected[i][0].toInt());
        const QStringList texts = {item.SelectType,   item.Table, item.JoinType,
                                   item.PossibleKeys, item.Key,   item.KeyLen,
                                   item.RefColumns,   item.Rows,  item.Extra};
        EXPECT_EQ(texts, expected[i].mid(1)) << "row " << i;
    }
}

TEST_F(TDbmExplainParserTest, LetsAColumnBeMissingOrNull)
{
    const auto query = Open("SELECT NULL AS id, 'x' AS `Table` UNION ALL SELECT 2, NULL");
    query->Last();
    const QList<TDbmExplainItem> items = TDbmExplainParser::Parse(*query);
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items[0].Id, 0);
    EXPECT_EQ(items[0].Table + items[0].Key, "x");
    EXPECT_EQ(items[1].Id, 2);
    EXPECT_EQ(items[1].Table, "");
    EXPECT_EQ(query->RecNo(), 0);
}

} // namespace
