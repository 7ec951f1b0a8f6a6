#include "model/uDbmManager.h"
#include "core/uServerProfile.h"
#include "uTestDatabase.h"
#include "uTestErrors.h"
#include "uTestPrint.h"

#include <gtest/gtest.h>

namespace {

class TManagerTest : public TServerTest
{
protected:
    TManagerTest()
    {
        Manager->SetParams(ServerProfile(Server()));
        Manager->SetOnCommandBeforeExecute(
            [this](TDbmManager *, const QString &text) { Statements += text; });
    }

    void BindTo(const QString &database)
    {
        TDbmConnectionProfile profile = ServerProfile(Server());
        profile.Database = database;
        Manager->SetParams(profile);
    }

    std::unique_ptr<TDbmManager> Manager = TDbmManager::Create();
    QStringList Statements;
};

TEST_F(TManagerTest, ListsDatabasesWithOneStatement)
{
    TDbmDatabaseList::TItemPtr item;
    ASSERT_TRUE(Manager->Databases().TryGetByName(Database().Name(), item));
    EXPECT_GT(Manager->Databases().Count(), 1);
    EXPECT_EQ(Statements.size(), 1);
    Manager->RequestProcess();
    EXPECT_EQ(Statements.size(), 1);
    EXPECT_EQ(Manager->Databases().GetByName(Database().Name()), item);
    EXPECT_EQ(Statements.size(), 2);
    EXPECT_EQ(MessageOf([&] { Manager->Databases().GetByName("no such database"); }),
              "Database \"%\" not found.");
}

TEST_F(TManagerTest, ABoundConnectionHasOneDatabase)
{
    BindTo(Database().Name());
    EXPECT_TRUE(Manager->IsDatabaseConnection());
    EXPECT_EQ(Manager->GetUsedDatabase()->Name(), Database().Name());
    EXPECT_EQ(Manager->Databases().Count(), 1);
    Exec("DROP DATABASE " + Database().Name());
    Manager->RequestProcess();
    EXPECT_EQ(Manager->Databases().Count(), 0);
    EXPECT_EQ(MessageOf([&] { Manager->GetUsedDatabase(); }), "Get used database error.");
    Server().Exec("CREATE DATABASE " + Database().Name());
}

TEST_F(TManagerTest, ACharsetDropsTheSessionAndTheNextReadBringsItBack)
{
    Manager->Connect();
    TDbmDatabaseList::TItemPtr item;
    EXPECT_TRUE(Manager->Databases().TryGetByName(Database().Name(), item));
    Manager->SetCharset("latin1");
    EXPECT_FALSE(Manager->Provider().Connection().Connected());
    EXPECT_TRUE(Manager->Databases().TryGetByName(Database().Name(), item));
    EXPECT_TRUE(Manager->Provider().Connection().Connected());
    EXPECT_EQ(Statements.size(), 2) << "everything became stale";
    // The profile's charset comes back with the session.
    QString charset;
    Manager->Commands().Charsets().ExecuteGetSessionCharset(charset);
    EXPECT_EQ(charset, "utf8mb4");
}

TEST_F(TManagerTest, AFailedReadIsToldAndEmpty)
{
    QStringList failures;
    Manager->Commands().SetOnCommandNotExecuted(
        [&](TDbmChildCommands *, const QString &message, const QString &) { failures += message; });
    TDbmConnectionProfile profile = ServerProfile(Server());
    profile.UserName = "nobody";
    profile.Password = "wrong";
    Manager->SetParams(profile);
    EXPECT_EQ(Manager->Databases().Count(), 0);
    ASSERT_EQ(failures.size(), 1);
    EXPECT_TRUE(failures[0].startsWith("(1045) ")) << failures[0].toStdString();
    EXPECT_EQ(Manager->Databases().Count(), 0);
    EXPECT_EQ(failures.size(), 1) << "a failing server is not asked again by itself";
    Manager->SetParams(ServerProfile(Server()));
    Manager->RequestProcess();
    EXPECT_GT(Manager->Databases().Count(), 0);
}

} // namespace
