#include "app/uAppSqlCatalogue.h"

#include "support/uException.h"
#include "support/uFileUtils.h"
#include "uTestDatabase.h"
#include "uTestSession.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace {

const QString Data = QStringLiteral(KORVANE_SOURCE_DIR "/data/");

QString ErrorOfCall(TTestSession &session, const QString &name)
{
    try {
        session.Exec("SELECT " + name + "()");
    } catch (const std::exception &e) {
        return QString::fromUtf8(e.what());
    }
    return {};
}

/// Whether the server has a function of this name. A call without arguments is refused in another
/// way when it has; by its grammar for those that have one of their own.
bool HasFunction(TTestSession &session, const QString &name)
{
    return !ErrorOfCall(session, name).contains("does not exist");
}

bool IsPlainFunction(TTestSession &session, const QString &name)
{
    const QString error = ErrorOfCall(session, name);
    return !error.contains("does not exist") && !error.contains("SQL syntax");
}

/// Names that the server's help has in front of a bracket; other names of a function stand in the
/// texts only.
QSet<QString> CalledInHelp(TTestSession &session)
{
    static const QRegularExpression call("\\b([A-Z][A-Z_0-9]+)\\(");
    QSet<QString> names;
    for (const QStringList &row :
         session.Rows("SELECT UPPER(CONCAT(name, ' ', description)) FROM mysql.help_topic"))
        for (auto it = call.globalMatch(row.first()); it.hasNext();)
            names.insert(it.next().captured(1));
    return names;
}

TEST(TAppSqlFunctionsTest, EveryFunctionIsKnownToAServer)
{
    TAppSqlFunctions functions(Data + "functions.xml");
    const auto items = functions.SelectItemsByFilter("");
    EXPECT_GE(items.size(), 400);
    EXPECT_GT(functions.Groups().size(), 10u);
    QSet<QString> names;
    TTestSession maria(TTestServer::Instance(), "mysql");
    const auto mysql = TTestServer::MySql9()
                           ? std::make_unique<TTestSession>(*TTestServer::MySql9(), "mysql")
                           : nullptr;
    for (const TAppSqlFunctionsItem *item : items) {
        EXPECT_FALSE(names.contains(item->FName)) << item->FName.toStdString();
        names.insert(item->FName);
        EXPECT_TRUE(item->FValue.contains(item->FName, Qt::CaseInsensitive))
            << item->FName.toStdString();
        EXPECT_TRUE(item->FDescription.endsWith('.')) << item->FName.toStdString();
        const bool known =
            HasFunction(maria, item->FName) || (mysql && HasFunction(*mysql, item->FName));
        // Without the second server its own functions cannot be asked for.
        EXPECT_TRUE(known || !mysql) << item->FName.toStdString();
    }
}

// What both servers list as a function of their own is described.
TEST(TAppSqlFunctionsTest, WhatBothServersHaveIsThere)
{
    SKIP_WITHOUT_MYSQL9();
    TAppSqlFunctions functions(Data + "functions.xml");
    QSet<QString> names;
    for (const TAppSqlFunctionsItem *item : functions.SelectItemsByFilter(""))
        names.insert(item->FName.toUpper());
    TTestSession maria(TTestServer::Instance(), "mysql");
    TTestSession mysql(*TTestServer::MySql9(), "mysql");
    QSet<QString> called = CalledInHelp(maria) + CalledInHelp(mysql);
    for (const QStringList &row : maria.Rows("SELECT function FROM information_schema.sql_functions"
                                             " WHERE function RLIKE '^\\\\w+$'"))
        called.insert(row.first().toUpper());
    called -= names;
    for (const QString &name : std::as_const(called))
        EXPECT_FALSE(IsPlainFunction(maria, name) && IsPlainFunction(mysql, name))
            << name.toStdString();
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
