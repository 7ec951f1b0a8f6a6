#include "uClientTools.h"
#include "uTestPrint.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <random>

namespace {

class TBinaryRowTest : public testing::TestWithParam<TTestServerKind>
{
protected:
    void SetUp() override
    {
        if (GetParam() == skMySQL)
            SKIP_WITHOUT_MYSQL9();
        TTestServer &server =
            GetParam() == skMySQL ? *TTestServer::MySql9() : TTestServer::Instance();
        FDatabase = std::make_unique<TTestDatabase>(server);
        Aim(FConnection, server, FDatabase->Name());
        FConnection.Connect();
        FConnection.Execute("SET SESSION sql_mode = ''");
    }

    /// Reads a statement both ways: as rows of text, and streamed. Every cell must be the same.
    void ExpectSame(const QString &sql)
    {
        TMyQuery text(&FConnection);
        text.SetSQL(sql);
        text.Execute();
        ASSERT_GT(text.RecordCount(), 0);
        TMyQuery streamed(&FConnection);
        streamed.SetSQL(sql);
        qint64 row = 0;
        streamed.Stream({}, [&](const TMyQuery::TRowView &view) {
            EXPECT_EQ(view.Count, text.FieldCount());
            for (int i = 0; i < view.Count; ++i) {
                const TField &field = text.FieldAt(i);
                EXPECT_EQ(view.Cells[i] == nullptr, field.IsNullAt(row))
                    << field.FieldName().toStdString() << " of row " << row;
                EXPECT_EQ(std::string(view.Cells[i] ? view.Cells[i] : "", view.Lengths[i]),
                          field.RawAt(row).toByteArray().toStdString())
                    << field.FieldName().toStdString() << " of row " << row;
            }
            ++row;
            return !HasFailure();
        });
        EXPECT_EQ(row, text.RecordCount());
    }

    std::unique_ptr<TTestDatabase> FDatabase;
    TMyConnection FConnection;
};

TEST_P(TBinaryRowTest, EveryTypeReadsAsInAnAnswerOfText)
{
    FDatabase->Exec(
        "CREATE TABLE t (id int PRIMARY KEY, ti tinyint, tu tinyint unsigned, si smallint,"
        " su smallint unsigned, mi mediumint, mu mediumint unsigned, i int, iu int unsigned,"
        " b bigint, bu bigint unsigned, z int(8) unsigned zerofill, y year, f float, fd "
        "float(10,3),"
        " d double, dd double(20,4), dz double(12,2) zerofill, n decimal(30,10), bits bit(9),"
        " da date, dt datetime, dt3 datetime(3), dt6 datetime(6), ts timestamp NULL, ti0 time,"
        " ti6 time(6), c char(9), vc varchar(99), tx text, vb varbinary(99), bl longblob,"
        " e enum('a','b'), s set('x','y'), j json, g geometry)");
    FDatabase->Exec("SET SESSION sql_mode = ''");
    for (const char *values :
         {"(1, -128, 255, -32768, 65535, -8388608, 16777215, -2147483648, 4294967295,"
          " -9223372036854775808, 18446744073709551615, 5, 1901, 1.5, 12345.678, 0.1, -1.00005,"
          " 1.5, -12345678901234567890.0123456789, b'100000001', '1000-01-01',"
          " '9999-12-31 23:59:59', '2001-02-03 04:05:06.789', '2001-02-03 00:00:00.000001',"
          " '2001-02-03 04:05:06', '-838:59:59', '-00:00:00.000001', 'x', 'it''s', 'описание',"
          " x'00ff', x'', 'b', 'x,y', '{\"a\": 1}', ST_GeomFromText('POINT(1 2)'))",
          "(2, 127, 0, 32767, 0, 8388607, 0, 2147483647, 0, 9223372036854775807, 0, 123456789,"
          " 2155, 1e30, -0.0005, 1e300, 0, 0, 0, b'0', '0000-00-00', '0000-00-00 00:00:00',"
          " '0000-00-00', '2001-02-03', '2001-02-03', '00:00:00', '25:00:00.5', '', '',"
          " REPEAT('x', 70000), REPEAT(x'27', 99), REPEAT(x'01', 300), '', '', 'null', NULL)",
          "(3, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 0, 0, 0, -0e0, -0.00001, 3, 1, b'111111111',"
          " '2001-02-00', '2001-02-03 12:00:00', '2001-02-03 12:00:00', '2001-02-03 12:00:00.5',"
          " '2001-02-03 12:00:00', '100:00:01', '838:59:59', REPEAT('y', 9), REPEAT('z', 99), '',"
          " REPEAT('a', 99), 'b', 'a', 'y', '[]', NULL)"})
        FConnection.Execute(QString("INSERT INTO t VALUES ") + values);
    FConnection.Execute("INSERT INTO t (id) VALUES (4)");
    ExpectSame("SELECT * FROM t");
    ExpectSame("SELECT id + 0e0, f + 0e0, f * f, d / 3, dt + INTERVAL 1 SECOND, i = 0, NULL, 'x',"
               " SEC_TO_TIME(ti / 7), bu DIV 2, n / 7, COUNT(*) OVER () FROM t");
}

TEST_P(TBinaryRowTest, WhatHasNoBinaryFormComesAsText)
{
    ExpectSame("SHOW VARIABLES LIKE 'version%'");
    // A place for a parameter is an error of the statement, as it is without preparing.
    const EMyError error = ErrorOf([this] {
        TMyQuery query(&FConnection);
        query.SetSQL("SELECT ?");
        query.Stream({}, [](const TMyQuery::TRowView &) { return true; });
    });
    EXPECT_EQ(error.ErrorCode(), 1064) << error.Message().toStdString();
    ExpectSame("SELECT 6");
}

TEST_P(TBinaryRowTest, DoublesOfEverySizeReadAsTheServerWritesThem)
{
    FDatabase->Exec("CREATE TABLE t (d double, f float, k double(40,7))");
    std::mt19937_64 random(4711); // the same numbers in each run
    QStringList rows;
    const auto add = [&rows](double value) {
        char text[40];
        const auto end = std::to_chars(text, text + sizeof text, value).ptr;
        const QString number = QString::fromLatin1(text, end - text);
        const bool fitsFloat = std::abs(value) < 1e38;
        const bool fitsFixed = std::abs(value) < 1e32;
        rows +=
            QString("(%1, %2, %3)").arg(number, fitsFloat ? number : "0", fitsFixed ? number : "0");
    };
    for (int i = 0; i < 12000; ++i) {
        const double value = std::bit_cast<double>(random());
        if (std::isfinite(value))
            add(value);
        // Those that people store: a few digits, with and without a point.
        add(static_cast<double>(static_cast<qint64>(random())) / std::pow(10, i % 40));
        add(static_cast<double>(i * 125) / 1000);
    }
    constexpr qsizetype Most = 2000;
    for (qsizetype i = 0; i < rows.size(); i += Most)
        FDatabase->Exec("INSERT INTO t VALUES " + rows.mid(i, Most).join(','));
    ExpectSame("SELECT * FROM t");
}

INSTANTIATE_TEST_SUITE_P(Servers, TBinaryRowTest, testing::Values(skMariaDB, skMySQL),
                         [](const testing::TestParamInfo<TTestServerKind> &info) {
                             return info.param == skMySQL ? "MySQL9" : "MariaDB";
                         });

} // namespace
