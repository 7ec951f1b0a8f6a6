#include "tools/uDbmQueryTextResultFormatter.h"

#include "uToolsTest.h"

namespace {

using namespace Qt::StringLiterals;

class TDbmQueryTextResultFormatterTest : public TToolsTest
{
protected:
    /// The lines of the table: without the query and the line below.
    QStringList Table(const QString &sql)
    {
        const auto query = Open(sql);
        QString text;
        FFormatter.Execute("q", query.get(), text, 0);
        const QStringList lines = text.split("\r\n");
        return lines.mid(1, lines.size() - 2);
    }

    TDbmQueryTextResultFormatter FFormatter;
};

TEST_F(TDbmQueryTextResultFormatterTest, PutsQueryTableAndCountOneBelowTheOther)
{
    const auto query = Open("SELECT 1 AS a, 'x' AS name UNION ALL SELECT 22, 'y'");
    query->Next();
    TCountingLink link(*query);
    QString text;
    FFormatter.Execute(" \nSELECT\n 1; ", query.get(), text, 0.0123456);
    EXPECT_EQ(text, "SELECT\n 1;\r\n"
                    "-------\r\n"
                    " a name\r\n"
                    "-------\r\n"
                    " 1 x   \r\n"
                    "22 y   \r\n"
                    "-------\r\n"
                    "Fetched 2 row(s) for 12.35 ms.");
    EXPECT_EQ(query->RecNo(), 0);
    EXPECT_FALSE(query->ControlsDisabled());
    EXPECT_LE(link.Moves, 1);
}

TEST_F(TDbmQueryTextResultFormatterTest, HasNoTableWithoutRowsToShow)
{
    QString text;
    FFormatter.Execute("SELECT", nullptr, text, 1);
    EXPECT_EQ(text, "SELECT\r\nFetched 0 row(s) for 1000.00 ms.");
    const auto query = Open("DO 1");
    FFormatter.Execute("DO 1", query.get(), text, 1);
    EXPECT_EQ(text, "DO 1\r\nFetched 0 row(s) for 1000.00 ms.");
    EXPECT_EQ(Table("SELECT 1 AS a, 'x' AS bc FROM DUAL WHERE 1 = 0"),
              QStringList({"----", "a bc", "----", "----"}));
}

TEST_F(TDbmQueryTextResultFormatterTest, ShowsSizesInPlaceOfBlobs)
{
    Exec("CREATE TABLE t (b LONGBLOB, c LONGTEXT)");
    Exec("INSERT INTO t VALUES (NULL, NULL), ('', 'a''b'), (REPEAT('x', 1536), REPEAT('x', 1024))");
    EXPECT_EQ(Table("SELECT b, c FROM t ORDER BY LENGTH(b)").mid(3, 3),
              QStringList({"BLOB: (NULL) TEXT: (NULL)", "BLOB: 0 B    TEXT: 3 B   ",
                           "BLOB: 1.5 KB TEXT: 1.0 KB"}));
    FFormatter.SetShowBlobText(true);
    EXPECT_EQ(Table("SELECT c FROM t WHERE LENGTH(b) = 0 OR b IS NULL ORDER BY b")[3], "NULL");
    EXPECT_EQ(Table("SELECT c FROM t WHERE LENGTH(b) = 0")[3], "a\\'b");
}

TEST_F(TDbmQueryTextResultFormatterTest, DrawsLinesAndKeepsARowOnOneLine)
{
    FFormatter.SetDrawVertLines(true);
    EXPECT_EQ(Table(u"SELECT 'a\nb' AS x, NULL AS ``, 'Ж' AS x"_qs),
              QStringList({u"---------------"_qs, u"x    |      | x"_qs, u"---------------"_qs,
                           u"a\\nb | NULL | Ж"_qs, u"---------------"_qs}));
}

} // namespace
