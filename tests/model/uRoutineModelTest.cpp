#include "uModelFixture.h"

#include "sql/uDbmRoutineGuard.h"

namespace {

class TRoutineModelTest : public TModelTest
{
protected:
    TDbmRoutineCommands &Commands() { return Manager->Commands().Routines(); }
    /// All that the server keeps of a routine; empty when there is none.
    QString Whole(const QString &kind, const QString &name) const
    {
        try {
            return FDatabase->Rows("SHOW CREATE " + kind + " `" + name + '`').first().join('|');
        } catch (const std::runtime_error &) {
            return {};
        }
    }
};

// Line ends, lines that begin as comments, mode, collation and definer are not what our session
// would give.
const QString OddProcedure =
    "CREATE DEFINER=korvane@`%` PROCEDURE p (a ENUM('x', \"y\")) COMMENT 'it''s' BEGIN\n"
    "-- kept\n\n  SELECT 'a' || \"b\";\nEND";

TEST_P(TRoutineModelTest, OneThatCannotBeReplacedIsPutBack)
{
    TTestSession session(Server(), Name());
    session.Exec("SET sql_mode = 'PIPES_AS_CONCAT,NO_ZERO_DATE', NAMES latin1 COLLATE latin1_bin");
    session.Rows(OddProcedure);
    const QString before = Whole("PROCEDURE", "p");
    const QString mode = OwnValue(*Manager, "SELECT @@sql_mode");
    const TDbmRoutineEntity old = Routine("p").Entity();
    TDbmRoutineEntity broken = old;
    broken.Definition = "SELEKT 1";
    EXPECT_EQ(ErrorOf([&] { Commands().ExecuteRecreate(Name(), broken, "a int", old); }), 1064);
    EXPECT_EQ(Whole("PROCEDURE", "p").toStdString(), before.toStdString());
    EXPECT_EQ(OwnValue(*Manager, "SELECT @@sql_mode"), mode);

    TDbmRoutineEntity edited = old;
    edited.Definition = "SELECT 2";
    Commands().ExecuteRecreate(Name(), edited, "a int", old);
    EXPECT_TRUE(Whole("PROCEDURE", "p").contains("(a int)"));
    broken.RoutineName = "missing";
    EXPECT_EQ(ErrorOf([&] { Commands().ExecuteRecreate(Name(), edited, "", broken); }), 1305);
}

TEST_P(TRoutineModelTest, AScriptThatFailsBetweenDropAndCreateLosesNothing)
{
    Exec("CREATE PROCEDURE p (a int) SELECT 1");
    Exec("CREATE FUNCTION f () RETURNS int DETERMINISTIC RETURN 1");
    Exec("CREATE PROCEDURE dropped () SELECT 1");
    const QString before = Whole("PROCEDURE", "p") + Whole("FUNCTION", "f");
    Manager->Command().ExecScript("USE `" + Name() + '`');
    const auto run = [&](const QString &script) {
        TDbmRoutineGuard guard(Commands(), script);
        EXPECT_NE(ErrorOf([&] { Manager->Command().ExecScript(script); }), 0);
        return guard.PutBack();
    };
    const QString name = '`' + Name() + "`.`p`";
    EXPECT_EQ(run("DROP PROCEDURE IF EXISTS " + name + ";\n\nDELIMITER $$\n\nCREATE PROCEDURE " +
                  name + " (a int)\nSELEKT 1"),
              "\r\nThe old routine \"p\" was put back.");
    EXPECT_EQ(Whole("PROCEDURE", "p") + Whole("FUNCTION", "f"), before);
    EXPECT_EQ(run("drop function F;\ncreate definer=root@localhost function F() returns int no;"),
              "\r\nThe old routine \"F\" was put back.");
    EXPECT_EQ(Whole("PROCEDURE", "p") + Whole("FUNCTION", "f"), before);
    // What was made anew stays, and what a script only drops is gone as it was asked for.
    EXPECT_EQ(run("DROP PROCEDURE p;\nCREATE PROCEDURE p () SELECT 2;\nDROP PROCEDURE dropped;\n"
                  "DROP FUNCTION IF EXISTS none;\nCREATE FUNCTION none no;"),
              "");
    EXPECT_TRUE(Whole("PROCEDURE", "p").contains("SELECT 2"));
    EXPECT_EQ(Whole("PROCEDURE", "dropped"), "");
}

TEST_P(TRoutineModelTest, ARenameThatFailsLeavesTheOldOne)
{
    Exec("CREATE PROCEDURE p (a int) SELECT 1");
    Exec("CREATE PROCEDURE taken () SELECT 2");
    const QString before = Whole("PROCEDURE", "p");
    EXPECT_EQ(ErrorOf([&] { Manager->Operations().RenameRoutine(Routine("p"), "taken"); }), 1304);
    EXPECT_EQ(Whole("PROCEDURE", "p"), before);
    EXPECT_EQ(Database().Routines().Count(), 2);
    QString params = "x";
    Commands().ExecuteSelectParams(Name(), "missing", params, rtFunction);
    EXPECT_EQ(params, "");
    EXPECT_EQ(Failures.size(), 1);
    Failures.clear();
}

TEST_P(TRoutineModelTest, WhatAFunctionReturnsKeepsItsCharset)
{
    const char *const types[] = {"varchar(9) CHARSET latin1",
                                 "varchar(9) CHARSET latin1 COLLATE latin1_bin",
                                 "text CHARSET cp1251", "int unsigned"};
    for (const char *type : types) {
        Exec(QString("CREATE FUNCTION f () RETURNS ") + type + " DETERMINISTIC RETURN NULL");
        const auto text = [&](const QString &name) {
            return FDatabase->Rows("SHOW CREATE FUNCTION " + name).first().at(2).simplified();
        };
        const QString before = text("f");
        Database().Routines().RequestProcess();
        Manager->Operations().RenameRoutine(Routine("f"), "g");
        EXPECT_EQ(text("g").replace("`g`", "`f`").toStdString(), before.toStdString());
        if (IsMySQL()) {
            EXPECT_FALSE(Routine("g").Entity().Returns.contains("_ci"))
                << "default collations are those of one server";
        }
        Exec("DROP FUNCTION g");
    }
}

INSTANTIATE_ON_BOTH_SERVERS(TRoutineModelTest);

} // namespace
