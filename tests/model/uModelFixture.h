#pragma once

#include "core/uServerProfile.h"
#include "model/uDbmEventList.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmIndexList.h"
#include "model/uDbmManager.h"
#include "model/uDbmReferenceList.h"
#include "model/uDbmRoutineList.h"
#include "model/uDbmTableList.h"
#include "model/uDbmTriggerList.h"
#include "model/uDbmViewList.h"
#include "uTestPrint.h"

/// A manager on a database of the test's own, on each kind of server. Failed safe reads fail the
/// test unless it looks at them itself.
class TModelTest : public testing::TestWithParam<TTestServerKind>
{
protected:
    void SetUp() override
    {
        if (GetParam() == skMySQL)
            SKIP_WITHOUT_MYSQL9();
        FDatabase = std::make_unique<TTestDatabase>(Server());
        Manager = NewManager();
    }

    void TearDown() override { EXPECT_EQ(Failures, QStringList()); }

    TTestServer &Server() const
    {
        return GetParam() == skMySQL ? *TTestServer::MySql9() : TTestServer::Instance();
    }
    bool IsMySQL() const { return GetParam() == skMySQL; }

    std::unique_ptr<TDbmManager> NewManager()
    {
        auto manager = TDbmManager::Create();
        manager->SetParams(ServerProfile(Server()));
        manager->Connect();
        manager->Commands().SetOnCommandNotExecuted(
            [this](TDbmChildCommands *, const QString &message, const QString &) {
                Failures += message;
            });
        manager->SetOnCommandBeforeExecute(
            [this](TDbmManager *, const QString &text) { Statements += text; });
        return manager;
    }

    QString Name() const { return FDatabase->Name(); }
    void Exec(const QString &sql) const { FDatabase->Exec(sql); }
    QString Value(const QString &sql) const { return FDatabase->Value(sql); }
    QString TableText(const QString &table) const
    {
        return FDatabase->Rows("SHOW CREATE TABLE `" + table + '`').first().at(1);
    }
    TDbmDatabaseItem &Database() { return *Manager->Databases().GetByName(Name()); }
    /// What a list has under a name; a test without it ends.
    template <typename TList>
    static auto &Named(TList &list, const QString &name)
    {
        typename TList::TItemPtr item;
        if (!list.TryGetByName(name, item))
            throw std::runtime_error("no " + name.toStdString());
        return *item;
    }
    TDbmTableItem &Table(const QString &name) { return Named(Database().Tables(), name); }
    TDbmViewItem &View(const QString &name) { return Named(Database().Views(), name); }
    TDbmRoutineItem &Routine(const QString &name) { return Named(Database().Routines(), name); }
    TDbmEventItem &Event(const QString &name) { return Named(Database().Events(), name); }
    /// A value as the manager's own session has it.
    static QString OwnValue(TDbmManager &manager, const QString &sql)
    {
        return manager.Command().ExecQuery(sql).Query->Fields()[0]->AsString();
    }
    /// The server's error number; 0 without an error.
    static int ErrorOf(const std::function<void()> &action)
    {
        try {
            action();
        } catch (const EDacMySqlError &e) {
            return e.ErrorCode();
        }
        return 0;
    }

    static TDbmIndexEntity Index(const QString &name, TDbmIndexKind kind)
    {
        TDbmIndexEntity index;
        index.IndexName = name;
        index.IndexKind = kind;
        return index;
    }
    static TDbmIndexColumnEntity Column(const QString &name, qint64 length = 0)
    {
        TDbmIndexColumnEntity column;
        column.ColumnName = name;
        column.Length = length;
        return column;
    }

    std::unique_ptr<TTestDatabase> FDatabase;
    std::unique_ptr<TDbmManager> Manager;
    QStringList Failures;
    QStringList Statements;
};

#define INSTANTIATE_ON_BOTH_SERVERS(Suite)                                                         \
    INSTANTIATE_TEST_SUITE_P(Servers, Suite, testing::Values(skMariaDB, skMySQL),                  \
                             [](const testing::TestParamInfo<TTestServerKind> &info) {             \
                                 return info.param == skMySQL ? "MySQL9" : "MariaDB";              \
                             })
