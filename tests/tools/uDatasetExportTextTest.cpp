#include "tools/uDatasetExportText.h"

#include "support/uException.h"
#include "uToolsTest.h"

#include <QBuffer>

namespace {

class TDatasetExportTextTest : public TToolsTest
{
protected:
    TDatasetExportTextTest() { FExport.FSystem = TFormatSettings::Of(QLocale::c()); }
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
    EXPECT_EQ(Text(sql), "id;t;n;\r\n1;'it's';;\r\n2;'';'é東';\r\n");
}

TEST_F(TDatasetExportTextTest, ValuesKeepWhatTheyAre)
{
    Exec("CREATE TABLE v (f DOUBLE, lf DOUBLE, d DECIMAL(30,2), u BIGINT UNSIGNED,"
         " z INT(5) ZEROFILL, dt DATETIME, da DATE, ti TIME, b BLOB, eb BLOB, bi BIT(4))");
    Exec("INSERT INTO v VALUES (0.5, 0.12345678901234568, 12345678901234567890.12,"
         " 18446744073709551615, 42, '2024-02-29 13:05:00', '2024-02-09', '01:02:03', x'00ff', '',"
         " b'101')");
    FExport.FOptions.TextQualifier = u'"';
    EXPECT_EQ(Text("SELECT * FROM v"),
              "0.5\t0.12345678901234568\t12345678901234567890.12\t18446744073709551615\t42\t"
              "2024-02-29 13:05:00\t2024-02-09\t01:02:03\t0x00FF\t\"\"\t5\t\r\n");
    FExport.FOptions.DefaultRegionalSettings = false;
    FExport.FOptions.DateFormat = "d/mm/yy";
    FExport.FOptions.DateDelimiter = u'.';
    FExport.FOptions.TimeDelimiter = u'h';
    FExport.FOptions.DecimalDelimiter = u',';
    EXPECT_EQ(Text("SELECT f, lf, d, u, dt, da, ti, 'a.b' FROM v"),
              "0,5\t0,12345678901234568\t12345678901234567890,12\t18446744073709551615\t"
              "29.02.24 13h05h00\t9.02.24\t01h02h03\t\"a.b\"\t\r\n");
}

TEST_F(TDatasetExportTextTest, TheSystemsFormatsAreTheDefault)
{
    // The 29th is no day that every month has, so it takes another way through the code.
    const QString sql = "SELECT 1.5, 2.5e0, CAST('2024-02-09 13:05:07' AS DATETIME),"
                        " CAST('2024-02-29' AS DATE), CAST('2024-02-29 00:07:00' AS DATETIME),"
                        " CAST('2024-02-10 00:00:00' AS DATETIME), CAST('11:02:03' AS TIME)";
    // Neither a unit nor a blank is what the dialog calls a delimiter.
    for (const char *locale : {"ja_JP", "ko_KR", "fr_CA", "ta_IN", "nn_NO"})
        EXPECT_EQ(TFormatSettings::Of(QLocale(locale)).TimeSeparator, ":") << locale;
    const std::pair<const char *, QString> rows[] = {
        {"de_DE", "1,5;2,5;09.02.2024 13:05:07;29.02.2024;29.02.2024 00:07:00;10.02.2024;"
                  "11:02:03;\r\n"},
        {"en_US", "1.5;2.5;2/9/2024 1:05:07 PM;2/29/2024;2/29/2024 12:07:00 AM;2/10/2024;"
                  "11:02:03 AM;\r\n"},
        {"fr_CA", "1,5;2,5;2024-02-09 13 h 05 min 07 s;2024-02-29;2024-02-29 00 h 07 min 00 s;"
                  "2024-02-10;11 h 02 min 03 s;\r\n"},
        {"ja_JP", "1.5;2.5;2024/02/09 13時05分07秒;2024/02/29;2024/02/29 0時07分00秒;2024/02/10;"
                  "11時02分03秒;\r\n"},
    };
    FExport.FOptions.FieldDelimiter = u';';
    for (const auto &[locale, expected] : rows) {
        FExport.FSystem = TFormatSettings::Of(QLocale(locale));
        FExport.FOptions.DefaultRegionalSettings = true;
        EXPECT_EQ(Text(sql), expected) << locale;
        // What the dialog shows as defaults gives the same file.
        FExport.FOptions.DefaultRegionalSettings = false;
        FExport.FOptions.DateFormat = FExport.FSystem.ShortDateFormat;
        FExport.FOptions.DateDelimiter = FExport.FSystem.DateSeparator[0].unicode();
        FExport.FOptions.TimeDelimiter = FExport.FSystem.TimeSeparator[0].unicode();
        FExport.FOptions.DecimalDelimiter = FExport.FSystem.DecimalSeparator[0].unicode();
        EXPECT_EQ(Text(sql), expected) << locale;
    }
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
