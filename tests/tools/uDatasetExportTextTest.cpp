#include "tools/uDatasetExportText.h"

#include "support/uException.h"
#include "uToolsTest.h"

#include <QBuffer>

namespace {

class TDatasetExportTextTest : public TToolsTest
{
protected:
    QString Text(const QString &sql)
    {
        const auto query = Open(sql);
        FExport.FDataset = query.get();
        QString text;
        FExport.ExportAsText(text);
        EXPECT_EQ(query->RecNo(), query->IsEmpty() ? -1 : 0);
        // Run for the export, the rows come out the same and are not held.
        query->Close();
        QString streamed;
        FExport.ExportAsText(streamed);
        EXPECT_EQ(streamed, text);
        EXPECT_FALSE(query->Active());
        return text;
    }
    TDatasetExportText FExport;
};

TEST_F(TDatasetExportTextTest, EachFieldIsFollowedByTheDelimiter)
{
    const QString sql = "SELECT 1 AS id, 'it''s' AS t, NULL AS n UNION ALL SELECT 2, '', 'é東'";
    EXPECT_EQ(Text(sql), "1\tit's\t\t\r\n2\t\té東\t\r\n");
    FExport.FOptions.ColumnTitles = true;
    FExport.FOptions.FieldDelimiter = u';';
    FExport.FOptions.TextQualifier = u'\'';
    EXPECT_EQ(Text(sql), "id;t;n;\r\n1;'it's';;\r\n2;;'é東';\r\n");
    FExport.FOptions.FieldDelimiter = 0;
    FExport.FOptions.TextQualifier = 0;
    EXPECT_EQ(Text(sql), "idtn\r\n1it's\r\n2é東\r\n");
    EXPECT_EQ(Text("SELECT 1 AS a FROM (SELECT 1) AS x WHERE 1 = 0"), "a\r\n");
    FExport.FOptions.ColumnTitles = false;
    EXPECT_EQ(Text("SELECT 1 AS a FROM (SELECT 1) AS x WHERE 1 = 0"), "");
}

TEST_F(TDatasetExportTextTest, ValuesKeepWhatTheyAre)
{
    Exec("CREATE TABLE v (f DOUBLE, d DECIMAL(30,2), u BIGINT UNSIGNED, z INT(5) ZEROFILL,"
         " dt DATETIME, da DATE, ti TIME, b BLOB, bi BIT(4))");
    Exec("INSERT INTO v VALUES (0.5, 12345678901234567890.12, 18446744073709551615, 42,"
         " '2024-02-29 13:05:00', '2024-02-09', '01:02:03', x'00ff', b'101')");
    EXPECT_EQ(Text("SELECT * FROM v"),
              "0.5\t12345678901234567890.12\t18446744073709551615\t42\t2024-02-29 13:05:00\t"
              "2024-02-09\t01:02:03\t0x00FF\t5\t\r\n");
    FExport.FOptions.DefaultRegionalSettings = false;
    FExport.FOptions.DateFormat = "d/mm/yy";
    FExport.FOptions.DateDelimiter = u'.';
    FExport.FOptions.TimeDelimiter = u'h';
    FExport.FOptions.DecimalDelimiter = u',';
    EXPECT_EQ(Text("SELECT f, dt, da, ti FROM v"),
              "0,5\t29.02.24 13h05h00\t9.02.24\t01h02h03\t\r\n");
}

TEST_F(TDatasetExportTextTest, AStreamThatRefusesIsAnError)
{
    const auto query = Open("SELECT 1");
    QBuffer closed;
    FExport.FDataset = query.get();
    FExport.FStream = &closed;
    EXPECT_THROW(FExport.Export(), EException);
}

} // namespace
