#include "sql/uDbmLevelPrivileges.h"
#include "uFamilies.h"

#include <QSet>
#include <gtest/gtest.h>

namespace {

TEST(TPrivilegeTexts, ListOneWordALine)
{
    TDbmServerFeatures features;
    features.SetParams("10.11.6-MariaDB");
    const TDbmFormatters formatters(&features);
    TDbmTablePrivilegesEntity table;
    table.User = "u";
    table.Database = "d";
    table.Table = "t";
    const auto &tables = formatters.TablesPrivileges();
    EXPECT_EQ(tables.FormatCreate(table), "");
    table.Privs = {tpSelect, tpGrant};
    EXPECT_EQ(tables.FormatCreate(table), "GRANT \r\n  SELECT, \r\n  GRANT OPTION\r\nON\r\n"
                                          "  TABLE `d`.`t`\r\nTO\r\n  'u'@'%'\r\n");
    EXPECT_EQ(tables.FormatUpdate(table, {tpSelect, tpDrop}),
              "REVOKE \r\n  GRANT OPTION\r\nON\r\n  TABLE `d`.`t`\r\nFROM\r\n  'u'@'%';\r\n\r\n"
              "GRANT \r\n  DROP\r\nON\r\n  TABLE `d`.`t`\r\nTO\r\n  'u'@'%'\r\n");
    EXPECT_EQ(tables.FormatDelete(table), "REVOKE ALL PRIVILEGES ON TABLE `d`.`t` FROM 'u'@'%';\r\n"
                                          "REVOKE GRANT OPTION ON TABLE `d`.`t` FROM 'u'@'%';");
}

// Both tables tell of the same privileges: one more is in the one that came later.
TEST(TPrivilegeTables, TellTheSameOfEachPrivilege)
{
    const TDbmServerFeatures none;
    const TDbmFormattersOwner<TDbmPrivilegesFormatters> owner(&none);
    const QStringList all =
        (*owner).FormatPrivileges(TDbmPrivileges::UpTo(privReferences)).split(", ");
    TFamilies families(TTestServer::Instance());
    QSet<QString> words;
    TDbmUserPrivs bits;
    for (const TDbmPrivilegeText &text : TDbmLevelPrivileges::UserPrivs()) {
        words.insert(text.Word);
        bits.Include(static_cast<TDbmUserPriv>(text.Bit));
        const auto parsed =
            families.Parse(QString("SELECT 'y' AS ") + text.Stored, [&](const TDataSet &row) {
                return (*owner).ParsePrivilegesFromFields(row);
            });
        EXPECT_EQ((*owner).FormatPrivileges(parsed), text.Word);
    }
    EXPECT_EQ(bits, TDbmUserPrivs::UpTo(upTrigger));
    EXPECT_EQ(QSet<QString>(all.begin(), all.end()) - words, QSet<QString>{"CREATE TABLESPACE"});
}

} // namespace
