#include "sql/uDbmFormatters.h"
#include "sql/uDbmOtherUtils.h"
#include "uTestPrint.h"

#include <gtest/gtest.h>

namespace {

using TOther = TDbmOtherFormatters;

TEST(TControlTexts, FollowTheServer)
{
    const struct
    {
        QString (TOther::*Text)() const;
        const char *Old, *Now; // where the old one is no longer taken
    } texts[] = {
        {&TOther::FormatResetSlave, "RESET SLAVE", "RESET REPLICA"},
        {&TOther::FormatResetMaster, "RESET MASTER", "RESET BINARY LOGS AND GTIDS"},
        {&TOther::FormatFlushHosts, "FLUSH HOSTS", "TRUNCATE TABLE performance_schema.host_cache"},
    };
    TDbmServerFeatures features;
    const TDbmOtherFormatters formatters(&features);
    // What was renamed went on under its old name for years.
    for (const char *version : {"5.1.30", "8.0.36", "8.2.0", "11.4.2-MariaDB"}) {
        features.SetParams(version);
        for (const auto &text : texts)
            EXPECT_EQ((formatters.*text.Text)(), text.Old) << version;
    }
    features.SetParams("8.4.0");
    for (const auto &text : texts)
        EXPECT_EQ((formatters.*text.Text)(), text.Now);
}

// A text with nothing to escape goes out to the byte as it is; a quote never ends the literal.
TEST(TQuotedTexts, AreEscapedOnlyWhereTheyMust)
{
    const TDbmServerFeatures features;
    const TDbmFormatters formatters(&features);
    const auto texts = [&](const QString &text) {
        TDbmTableEntity table;
        table.Comment = text;
        return QStringList{formatters.Tables().FormatUpdate("d", "t", table),
                           formatters.Databases().FormatFetchQuery(text),
                           formatters.Tables().FormatSelectRow(text, text),
                           formatters.Events().FormatSelect(text),
                           formatters.Variables().FormatGetValue(text, svoGlobal),
                           formatters.UsersPrivileges().FormatSetPassword(text, text, text),
                           formatters.Plugins().FormatInstall("p", text),
                           TDbmOtherUtils::FormatUser(text + '@' + text)};
    };
    const QString clean = QString::fromUtf8("Größe 100 %s_ `x` ’");
    for (const QString &text : texts(clean))
        EXPECT_TRUE(text.contains('\'' + clean + '\'')) << text.toStdString();
    for (const QString &text : texts("it's \\"))
        EXPECT_TRUE(text.contains("'it\\'s \\\\'")) << text.toStdString();
}

} // namespace
