#include "uModelFixture.h"

#include "sql/uDbmProgramTexts.h"

namespace {

class TObjectModelTest : public TModelTest
{
protected:
    QString Text(const QString &kind, const QString &name) const
    {
        const int column = kind == u"VIEW" ? 1 : kind == u"EVENT" ? 3 : 2;
        return FDatabase->Rows("SHOW CREATE " + kind + " `" + name + '`').first().at(column);
    }
};

TEST_P(TObjectModelTest, ViewsKeepWhatTheyAre)
{
    Exec("CREATE TABLE t (a int, b int)");
    Exec("CREATE ALGORITHM=MERGE SQL SECURITY INVOKER VIEW v AS SELECT a, b FROM t WHERE a > 1 "
         "WITH LOCAL CHECK OPTION");
    EXPECT_EQ(View("v").GetCheckOptionDisplayString(), "Local");
    EXPECT_EQ(View("v").GetSecurityTypeDisplayString(), "Invoker");
    EXPECT_EQ(View("v").GetUpdatableDisplayString(), "Yes");
    EXPECT_EQ(View("v").Fields().Count(), 2);
    const QString before = Text("VIEW", "v");
    Manager->Operations().UpdateView(View("v"), View("v").Entity());
    EXPECT_EQ(Text("VIEW", "v"), before);
    TDbmViewEntity renamed = View("v").Entity();
    renamed.ViewName = "w";
    Manager->Operations().UpdateView(View("v"), renamed);
    EXPECT_EQ(Text("VIEW", "w"), QString(before).replace("`v`", "`w`"));
    TDbmViewEntity edited = View("w").Entity();
    edited.Definition = "SELECT a AS other FROM `" + Name() + "`.t WHERE a > 2";
    edited.CheckOption = vcoCascaded;
    edited.SecurityType = vsDefiner;
    Manager->Operations().UpdateView(View("w"), edited);
    EXPECT_EQ(View("w").GetCheckOptionDisplayString(), "Cascaded");
    EXPECT_EQ(View("w").GetSecurityTypeDisplayString(), "Definer");
    EXPECT_TRUE(Text("VIEW", "w").contains("ALGORITHM=MERGE") &&
                Text("VIEW", "w").contains("other"));
    EXPECT_EQ(View("w").Fields().Count(), 1);
    Manager->Operations().RenameView(View("w"), "x");
    Manager->Operations().DeleteView(View("x"));
    EXPECT_EQ(Database().Views().Count(), 0);
}

TEST_P(TObjectModelTest, ViewsComeBehindWhatTheyStandOn)
{
    Exec("CREATE TABLE t (a int)");
    Exec("CREATE VIEW z AS SELECT a FROM t");
    Exec("CREATE VIEW m AS SELECT a FROM z");
    Exec("CREATE VIEW a AS SELECT m.a AS ma, z.a FROM m, z");
    Exec("CREATE VIEW loop1 AS SELECT a FROM t");
    Exec("CREATE VIEW loop2 AS SELECT a FROM loop1");
    Exec("DROP VIEW loop1");
    QStringList names;
    for (const auto &view : Database().Views().ToDependencySortedArray())
        names.append(view->ViewName());
    EXPECT_EQ(names, QStringList({"z", "m", "a", "loop2"}));
}

TEST_P(TObjectModelTest, RoutinesAreCopiedWhole)
{
    Exec("CREATE TABLE t (a int)");
    Exec("CREATE PROCEDURE p (IN a DECIMAL(10,2), OUT b varchar(5)) READS SQL DATA SQL SECURITY "
         "INVOKER COMMENT 'it''s' BEGIN SELECT 1; SET b = ')'; END");
    Exec("CREATE FUNCTION f (a int) RETURNS varchar(9) CHARSET utf8mb4 DETERMINISTIC NO SQL RETURN "
         "CONCAT(a, ''' OR ''', 'c\\\\d;')");
    EXPECT_EQ(Routine("p").Params().GetValue(), "IN a DECIMAL(10,2), OUT b varchar(5)");
    EXPECT_EQ(Routine("p").GetSecurityTypeDisplayString(), "Invoker");
    EXPECT_EQ(Database().Routines().CountByType(rtFunction), 1);
    const QString before = Text("PROCEDURE", "p");
    Manager->Operations().RenameRoutine(Routine("p"), "p2");
    EXPECT_EQ(Text("PROCEDURE", "p2").replace("`p2`", "`p`").simplified(),
              QString(before).replace("`p`  (", "`p` (").simplified());
    const QString function = Text("FUNCTION", "f");
    Manager->Operations().RenameRoutine(Routine("f"), "f2");
    EXPECT_EQ(Text("FUNCTION", "f2").replace("`f2`", "`f`"), function);

    TDbmRoutineEntity entity = Routine("f2").Entity();
    entity.SecurityType = rsInvoker;
    entity.Comment = "a 'b'";
    Manager->Commands().Routines().ExecuteUpdate(Name(), "f2", entity);
    Database().Routines().RequestProcess();
    EXPECT_EQ(Routine("f2").Entity().Comment, "a 'b'");
    Manager->Operations().DeleteRoutine(Routine("f2"));
    Manager->Operations().DeleteRoutine(Routine("p2"));
    EXPECT_EQ(Database().Routines().Count(), 0);
}

TEST_P(TObjectModelTest, AParameterListIsReadWholeOrTheRoutineStays)
{
    Exec("CREATE PROCEDURE p (IN `a` ENUM('(', 'it''s'), b int /* ( */) SELECT a, b");
    const QString before = Text("PROCEDURE", "p");
    EXPECT_EQ(Routine("p").Params().GetValue(), "") << "what is shown counts each parenthesis";
    Manager->Operations().RenameRoutine(Routine("p"), "q");
    EXPECT_EQ(Text("PROCEDURE", "q").replace("`q`", "`p`").remove(' '),
              QString(before).remove(' '));
    TDbmRoutineItem &gone = Routine("q");
    Exec("DROP PROCEDURE q");
    EXPECT_THROW(Manager->Operations().RenameRoutine(gone, "r"), EDacMySqlError);
}

TEST_P(TObjectModelTest, AnEventKeepsTheMomentsOfItsTimeZone)
{
    TTestSession(Server(), Name())
        .Exec("SET time_zone = '+05:00'; CREATE EVENT e ON SCHEDULE EVERY 1 DAY STARTS"
              " '2031-01-01 00:00:00' ENDS '2032-01-01 01:00:00' COMMENT 'old' DO SET @a = "
              "''' OR ''', @b = 'a\\\\nb'");
    const QString before = Text("EVENT", "e");
    TDbmEventEntity entity = Event("e").Entity();
    EXPECT_EQ(entity.TimeZone, "+05:00");
    entity.Comment = "new";
    const auto zone = [&] { return OwnValue(*Manager, "SELECT @@SESSION.time_zone"); };
    const QString own = zone();
    Manager->Operations().UpdateEvent(Event("e"), entity);
    EXPECT_EQ(Text("EVENT", "e"), QString(before).replace("'old'", "'new'"));
    EXPECT_EQ(zone(), own);
    entity.Definition = "no statement";
    EXPECT_THROW(Manager->Operations().UpdateEvent(Event("e"), entity), EDacMySqlError);
    EXPECT_EQ(zone(), own);
}

TEST_P(TObjectModelTest, ATriggerThatCannotBeReplacedIsPutBack)
{
    Exec("CREATE TABLE t (a int, b int)");
    TTestSession session(Server(), Name());
    session.Exec("CREATE TRIGGER last BEFORE INSERT ON t FOR EACH ROW SET NEW.b = 1");
    session.Exec("SET sql_mode = 'ANSI_QUOTES', NAMES latin1 COLLATE latin1_bin");
    session.Rows("CREATE DEFINER = korvane@`%` TRIGGER tr BEFORE INSERT ON t FOR EACH ROW PRECEDES "
                 "last BEGIN\n\tSET NEW.\"a\" = 1;\n\n-- kept\n  SET @a = ''' OR '''; END");
    TDbmTriggerList &triggers = Table("t").Triggers();
    TDbmTriggerItem &item = Named(triggers, "tr");
    EXPECT_EQ(item.GetEventDisplayString(), "before insert");
    const QString known = "SELECT HEX(CONCAT_WS('|', action_statement, definer, sql_mode,"
                          " action_order, character_set_client, collation_connection)) FROM "
                          "information_schema.triggers WHERE trigger_schema = DATABASE() AND "
                          "trigger_name = 'tr'";
    const auto body = [&] { return TDbmProgramTexts::Body("TRIGGER", Text("TRIGGER", "tr")); };
    const QString before = Value(known), bodyBefore = body();
    EXPECT_TRUE(bodyBefore.startsWith("BEGIN"));
    const int logged = Manager->Command().Log().Count();
    TDbmTriggerEntity entity = item.Entity();
    entity.Body = "SET NEW.missing = 1";
    TDbmTriggerCommands &commands = Manager->Commands().Triggers();
    EXPECT_EQ(ErrorOf([&] { commands.ExecuteRecreate(Name(), "t", entity, "tr"); }), 1054);
    EXPECT_EQ(Value(known).toStdString(), before.toStdString());
    EXPECT_EQ(body().toStdString(), bodyBefore.toStdString());
    EXPECT_GT(Manager->Command().Log().Count(), logged + 3) << "what puts it back is logged too";
    commands.ExecuteDelete(Name(), "last");
    entity.Body = "SET NEW.a = 2";
    entity.TriggerName = "other";
    entity.Event = teBeforeUpdate;
    commands.ExecuteRecreate(Name(), "t", entity, "tr");
    triggers.RequestProcess();
    ASSERT_EQ(triggers.Count(), 1);
    EXPECT_EQ(triggers.ToArray().first()->GetEventDisplayString(), "before update");
    EXPECT_EQ(Database().Tables().GetTriggerCount(), 1);
}

TEST_P(TObjectModelTest, EventsOfSeveralStatements)
{
    TDbmEventEntity entity;
    entity.EventName = "e";
    entity.Definer = "root@localhost";
    entity.EventType = evtRecurring;
    entity.Interval.Days = 1;
    entity.Interval.Hours = 6;
    TDateTime::TryEncode(2031, 2, 3, 4, 5, 6, entity.StartsTimestamp);
    entity.Status = evsDisableOnSlave;
    entity.Comment = "it's";
    entity.Definition = "BEGIN SELECT 1; SELECT 2; END";
    Manager->Operations().CreateEvent(Database(), entity);
    EXPECT_EQ(Event("e").GetIntervalDisplayString(), "1d 6h");
    EXPECT_EQ(Event("e").GetStartsDisplayString(), "2031-02-03 04:05:06");

    TDbmEventEntity edited = Event("e").Entity();
    edited.EventName = "e2";
    edited.EventType = evtOneTime;
    edited.Interval = {};
    TDateTime::TryEncode(2032, 1, 1, 0, 0, 0, edited.AtTimestamp);
    edited.Status = evsDisable;
    edited.Definition = "BEGIN SELECT 3; SELECT 4; END";
    Manager->Operations().UpdateEvent(Event("e"), edited);
    EXPECT_EQ(Event("e2").Entity().Definition, edited.Definition);
    EXPECT_EQ(Event("e2").GetExecuteAtDisplayString(), "2032-01-01 00:00:00");
    EXPECT_EQ(Event("e2").Entity().Comment, "it's");
    Manager->Operations().RenameEvent(Event("e2"), "e3");
    Manager->Operations().DeleteEvent(Event("e3"));
    EXPECT_EQ(Database().Events().Count(), 0);
}

TEST_P(TObjectModelTest, DatabasesLiveThroughOperations)
{
    TDbmDatabaseEntity entity;
    entity.DatabaseName = Name() + "_made";
    entity.Collation = "utf8mb4_bin";
    Manager->Operations().CreateDatabase(Manager->Databases(), entity);
    TDbmDatabaseList::TItemPtr item = Manager->Databases().GetByName(entity.DatabaseName);
    EXPECT_EQ(item->Entity().Collation, "utf8mb4_bin");
    entity.Collation = "latin1_swedish_ci";
    Manager->Operations().UpdateDatabase(*item, entity);
    EXPECT_EQ(Manager->Databases().GetByName(entity.DatabaseName), item);
    EXPECT_EQ(item->Entity().Collation, "latin1_swedish_ci");
    Manager->Operations().DeleteDatabase(*item);
    EXPECT_FALSE(Manager->Databases().TryGetByName(entity.DatabaseName, item));
}

INSTANTIATE_ON_BOTH_SERVERS(TObjectModelTest);

} // namespace
