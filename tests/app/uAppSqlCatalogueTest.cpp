#include "app/uAppSqlCatalogue.h"

#include "support/uException.h"
#include "support/uFileUtils.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

const QString Data = QStringLiteral(KORVANE_SOURCE_DIR "/data/");

TEST(TAppSqlFunctionsTest, TheOwnOnesAreDescribed)
{
    TAppSqlFunctions functions(Data + "functions.xml");
    const auto items = functions.SelectItemsByFilter("");
    EXPECT_GE(items.size(), 400);
    EXPECT_GT(functions.Groups().size(), 10u);
    QSet<QString> names;
    for (const TAppSqlFunctionsItem *item : items) {
        EXPECT_FALSE(names.contains(item->FName)) << item->FName.toStdString();
        names.insert(item->FName);
        EXPECT_TRUE(item->FValue.contains(item->FName, Qt::CaseInsensitive))
            << item->FName.toStdString();
        EXPECT_TRUE(item->FDescription.endsWith('.')) << item->FName.toStdString();
    }
}

TEST(TAppSqlFunctionsTest, IsReadOnceAndFoundByPartsOfNames)
{
    const QTemporaryDir folder;
    const QString name = folder.filePath("f.xml");
    TFileUtils::WriteBinary(name, "<x><group name=\"G\"><function name=\"CONCAT\" value=\"v\"/>"
                                  "<other/><function name=\"icon\" description=\"d\"/></group>"
                                  "<group name=\"E\"/></x>");
    TAppSqlFunctions functions(name);
    const auto found = functions.SelectItemsByFilter("con");
    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found[0]->FName + found[0]->FValue + found[0]->FDescription, "CONCATv");
    EXPECT_EQ(found[1]->FName + found[1]->FValue + found[1]->FDescription, "icond");
    EXPECT_EQ(functions.Groups()[1]->FName, "E");
    QFile::remove(name);
    EXPECT_EQ(functions.SelectItemsByFilter("").size(), 2);
    TAppSqlFunctions missing(name);
    EXPECT_THROW(missing.Groups(), EException);
    EXPECT_TRUE(missing.Groups().empty()) << "the second access sees an empty catalogue";
}

TEST(TAppSqlTemplatesTest, FollowsItsIndexAndFailsForAMissingFile)
{
    const QTemporaryDir folder;
    const auto write = [&](const char *name, const QByteArray &bytes) {
        TFileUtils::WriteBinary(folder.filePath(name), bytes);
    };
    write("index.xml", "<t><group name=\"G\"><template name=\"One\" filename=\"one.sql\"/>"
                       "<template name=\"Gone\" filename=\"gone.sql\"/></group></t>");
    write("one.sql", "SELECT 1;\n");
    TAppSqlTemplates templates(folder.path());
    const auto items = templates.SelectItemsByFilter("o");
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(templates.GetTemplateValue(*items[0]), "SELECT 1;\n");
    EXPECT_THROW(templates.GetTemplateValue(*items[1]), EException);
    write("index.xml", "<t/>");
    EXPECT_TRUE(templates.SelectItemsByFilter("").isEmpty());
    QFile::remove(folder.filePath("index.xml"));
    EXPECT_THROW(templates.Groups(), EException);
    EXPECT_THROW(templates.Groups(), EException);
}

TEST(TAppSqlTemplatesTest, TheOwnOnesAreAllThere)
{
    TAppSqlTemplates templates(Data + "templates");
    QSet<QString> files;
    for (const TAppSqlTemplatesItem *item : templates.SelectItemsByFilter("")) {
        files.insert(item->FFileName);
        EXPECT_FALSE(templates.GetTemplateValue(*item).isEmpty()) << item->FName.toStdString();
        EXPECT_FALSE(item->FDescription.isEmpty()) << item->FName.toStdString();
    }
    EXPECT_GE(files.size(), 60);
    EXPECT_EQ(files.size(), QDir(Data + "templates").entryList({"*.sql"}).size());
}

} // namespace
