#include "app/uAppPathUtils.h"
#include "model/uDbmTableList.h"
#include "model/uDbmViewList.h"
#include "pages/query/uQueryPageFrame.h"
#include "pages/schema/uSchemaPageFrame.h"
#include "pages/structure/uTablePageFrame.h"
#include "shell/uWorkbenchFixture.h"
#include "support/uFileUtils.h"

#include <QDir>
#include <QFile>
#include <QTabBar>
#include <QTabWidget>

namespace {

/// What a workspace keeps of its pages, over a close, a crash and a disk that refuses.
class TManagerSessionTest : public TWorkbenchTest
{
protected:
    QString SessionFile(const QString &end) const
    {
        return TAppPathUtils::SessionsFolder() + "/{id}" + end;
    }

    QString Write(const QString &name, const QString &text)
    {
        QDir().mkpath(QFileInfo(FilePath(name)).path());
        TFileUtils::WriteBinary(FilePath(name), text.toUtf8());
        return FilePath(name);
    }

    static QByteArray Read(const QString &fileName)
    {
        QByteArray bytes;
        TFileUtils::ReadBinary(fileName, bytes);
        return bytes;
    }

    /// Opens a query page on a file of this text.
    void OpenFile(const QString &name, const QString &text, const QString &database = {})
    {
        Pages().ShowQueryFromFile(Write(name, text), database, 0, true);
    }

    void Type(const QString &text) { QueryEditor().PasteText(text); }

    /// In the order of the questions: what to do with a file that is gone, whether to close a page
    /// that could not be saved.
    void ExpectRefusedSave(const QString &answer)
    {
        Answer("butYes"); // overwrite
        ExpectError("gone/file.sql");
        Answer(answer);
    }

    QStringList Texts()
    {
        QStringList texts;
        for (int i = 0; i < Workspace().PageManager().PageCount(); ++i)
            if (const auto *page =
                    qobject_cast<TQueryPageFrame *>(Workspace().PageManager().GetPageByIndex(i)))
                texts += page->GetText();
        return texts;
    }

    void ExpectTabsInSight()
    {
        TTestLoop::Settle();
        const auto *bar = Workspace().PageManager().findChild<QTabBar *>("tabBar");
        ASSERT_TRUE(bar->isVisible());
        EXPECT_GT(bar->height(), 10);
        for (int i = 0; i < bar->count(); ++i)
            EXPECT_GT(bar->tabRect(i).width(), 10) << i;
    }

    /// The journal once it has this text.
    QByteArray JournalWith(const QString &text)
    {
        const QByteArray hex = text.toUtf8().toHex();
        QByteArray journal;
        TTestLoop::RunUntil([&] {
            journal = Read(SessionFile(".0.journal"));
            return journal.toLower().contains(hex);
        });
        return journal;
    }
};

TEST_F(TManagerSessionTest, AWorkspaceComesBackAsItWasLeft)
{
    const QString nasty = QStringLiteral("SELECT 'äßω漢🙂', \"<&>\"\r\n\t-- ]]>\r\n");
    OpenWorkspace();
    NewQuery(nasty);
    Pages().ShowQueryFromFile(Write("kept.sql", "SELECT 2"), Database().Name(), 123, true);
    NewQuery("SELECT 3");
    Workspace().SetActivePageIndex(1);
    CloseWorkspace();

    OpenWorkspace();
    EXPECT_EQ(Workspace().GetPagesCaption(), (QStringList{"Query", "kept.sql", "Query"}));
    EXPECT_EQ(Workspace().GetActivePageIndex(), 1);
    EXPECT_EQ(QueryPage().GetUsedDatabaseName(), Database().Name());
    EXPECT_EQ(QueryPage().GetResultHeight(), 123);
    EXPECT_FALSE(Workspace().PageManager().GetPageByIndex(0)->IsLoaded())
        << "a page that is not looked at costs nothing";
    EXPECT_EQ(Texts(), (QStringList{nasty, "SELECT 2", "SELECT 3"}));
    ExpectTabsInSight();

    // Pages that nobody looked at are kept like the others.
    QFile::remove(FilePath("kept.sql"));
    CloseWorkspace();
    OpenWorkspace();
    EXPECT_EQ(Texts(), (QStringList{nasty, "SELECT 3"}));
    EXPECT_EQ(Workspace().GetActivePageIndex(), 0);
    ExpectTabsInSight();
}

TEST_F(TManagerSessionTest, HiddenPagesOfObjectsAskNothing)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY)");
    OpenWorkspace();
    Pages().ShowTable(Database().Name(), "t", true);
    Pages().ShowSchema(Database().Name(), true);
    NewQuery("SELECT 1");
    CloseWorkspace();

    OpenWorkspace();
    EXPECT_EQ(Workspace().GetPagesCaption(),
              (QStringList{Database().Name() + ".t", Database().Name(), "Query"}));
    for (int i = 0; i < 2; ++i)
        EXPECT_FALSE(Workspace().PageManager().GetPageByIndex(i)->IsLoaded());
    std::shared_ptr<TDbmDatabaseItem> database;
    ASSERT_TRUE(Workspace().Manager().Databases().TryGetByName(Database().Name(), database));
    EXPECT_FALSE(database->Tables().IsProcessed() || database->Views().IsProcessed());
    Workspace().SetActivePageIndex(1);
    auto *schema = qobject_cast<TSchemaPageFrame *>(Pages().GetActivePage());
    ASSERT_NE(schema, nullptr);
    EXPECT_EQ(Find<QTabWidget>(schema, "pcTabs")->tabText(0), "Tables: 1");
}

TEST_F(TManagerSessionTest, WhatWasTypedSurvivesACrash)
{
    OpenWorkspace();
    NewQuery("SELECT 'typed'");
    OpenFile("file.sql", "SELECT 2");
    Type("/* unsaved */ ");
    OpenFile("void.sql", "SELECT 3");
    QueryEditor().SelectAll();
    Type("");
    OpenFile("twin.sql", "SELECT 4");
    Type("/* twin */ ");
    QByteArray journal = JournalWith("/* twin */ SELECT 4");
    ASSERT_FALSE(journal.isEmpty());
    Workspace().CloseAllPages();
    CloseWorkspace();
    Write("file.sql", "SELECT 2");

    // As a process that died leaves it: nobody holds its lock. Two pages were saved as one file.
    const auto hex = [](const char *name) { return QByteArray(name).toHex().toUpper(); };
    ASSERT_TRUE(journal.contains(hex("twin.sql")));
    TFileUtils::WriteBinary(SessionFile(".5.journal"),
                            journal.replace(hex("twin.sql"), hex("file.sql")));
    OpenWorkspace();
    EXPECT_EQ(Texts(),
              (QStringList{"SELECT 'typed'", "/* unsaved */ SELECT 2", "", "/* twin */ SELECT 4"}));
    EXPECT_FALSE(QFile::exists(SessionFile(".5.journal")));

    // Both files were written since.
    for (const int page : {1, 2}) {
        Workspace().SetActivePageIndex(page);
        EXPECT_TRUE(IsEnabled("actQuerySave")) << "the change is not in the file";
        const QString file = QueryPage().GetFileName();
        const QByteArray before = Read(file);
        Answer("butNo"); // overwrite it?
        Trigger("actQuerySave");
        EXPECT_EQ(Read(file), before);
        Answer("butYes");
        Trigger("actQuerySave");
        EXPECT_EQ(Read(file), Texts()[page].toUtf8());
    }
}

TEST_F(TManagerSessionTest, HowATableIsBrowsedSurvivesACrash)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY)");
    OpenWorkspace();
    Pages().ShowTable(Database().Name(), "t", true);
    JournalWith("");
    auto *page = qobject_cast<TTablePageFrame *>(Pages().GetActivePage());
    ASSERT_NE(page, nullptr);
    TTableDataSessionData data;
    data.UseFilter = true;
    data.WhereCommandText = "id > 4711";
    page->SetDataSessionData(data);
    const QByteArray journal = JournalWith("id > 4711");
    ASSERT_TRUE(journal.toLower().contains(QByteArray("id > 4711").toHex()));
    const QString shown = "table_page." + Database().Name() + ".t";
    CloseWorkspace();
    TConfig session;
    session.Open(SessionFile(".xml"));
    EXPECT_TRUE(session.GetValue(shown, "data_shown", false));
}

// The text that the session has is there, whatever became of the file.
TEST_F(TManagerSessionTest, AFileThatCannotBeReadTakesNoTextWithIt)
{
    OpenWorkspace();
    OpenFile("file.sql", "SELECT 2", Database().Name());
    Type("/* unsaved */ ");
    const QByteArray journal = JournalWith("/* unsaved */ SELECT 2");
    Trigger("actQuerySave");
    Workspace().CloseAllPages();
    CloseWorkspace();
    TFileUtils::WriteBinary(SessionFile(".5.journal"), journal);
    ASSERT_TRUE(QFile::remove(FilePath("file.sql")));
    ASSERT_TRUE(QFile::link("/proc/self/mem", FilePath("file.sql"))); // of no use to read
    ExpectError("file.sql");
    OpenWorkspace();
    EXPECT_EQ(Texts(), QStringList{"/* unsaved */ SELECT 2"});
    EXPECT_TRUE(QueryPage().IsUnsaved());
    EXPECT_EQ(QueryPage().GetUsedDatabaseName(), Database().Name());
    Answer("butNo");  // overwrite it?
    Answer("butYes"); // close all the same
    Trigger("actWindowClosePage");
    EXPECT_TRUE(Texts().isEmpty());
    Trigger("actQueryReopen");
    EXPECT_EQ(Texts(), QStringList{"/* unsaved */ SELECT 2"});
}

TEST_F(TManagerSessionTest, AClosedQueryIsOpenedAgain)
{
    OpenWorkspace();
    EXPECT_FALSE(IsEnabled("actQueryReopen"));
    NewQuery("SELECT 'first'");
    NewQuery("SELECT 'second'");
    Trigger("actWindowCloseAllPages");
    EXPECT_TRUE(Texts().isEmpty());
    Trigger("actQueryReopen");
    Trigger("actQueryReopen");
    EXPECT_EQ(Texts(), (QStringList{"SELECT 'second'", "SELECT 'first'"}));
    EXPECT_FALSE(IsEnabled("actQueryReopen")) << "both are open again";

    // A page whose file has its text is not lost by a close.
    Trigger("actWindowCloseAllPages");
    Trigger("actQueryReopen");
    Trigger("actQueryReopen");
    OpenFile("kept.sql", "SELECT 2");
    Trigger("actWindowClosePage");
    EXPECT_FALSE(IsEnabled("actQueryReopen"));
}

TEST_F(TManagerSessionTest, ARefusedSaveKeepsTheTextInTheSession)
{
    OpenWorkspace();
    OpenFile("gone/file.sql", "SELECT 2");
    Type("/* precious */ ");
    ASSERT_TRUE(QDir(FilePath("gone")).removeRecursively());
    ExpectRefusedSave("butYes");
    CloseWorkspace();
    OpenWorkspace();
    EXPECT_EQ(Texts(), QStringList{"/* precious */ SELECT 2"});
}

// What was asked of pages for a close that did not come about counts for nothing.
TEST_F(TManagerSessionTest, ARefusedCloseTakesNoText)
{
    OpenWorkspace();
    NewQuery("SELECT 'first'");
    OpenFile("gone/file.sql", "SELECT 2");
    Type("/* refuses */ ");
    ASSERT_TRUE(QDir(FilePath("gone")).removeRecursively());
    OpenWorkspace();
    NewQuery("SELECT 'second'");
    auto *workspaces = Find<TPageManagerFrame>(Window.get(), "managersPageManager");
    workspaces->SelectNextPage();
    ExpectRefusedSave("butNo");
    Trigger("actCloseConnection");
    ASSERT_EQ(Texts().size(), 2);
    // Both workspaces are asked by the window, and the one that agrees stays as well.
    ExpectRefusedSave("butNo");
    Window->close();
    ASSERT_TRUE(Window->isVisible());

    Workspace().SetActivePageIndex(0);
    Trigger("actWindowClosePage");
    Trigger("actQueryReopen");
    EXPECT_TRUE(Texts().contains("SELECT 'first'"));
    workspaces->SelectNextPage();
    Trigger("actWindowClosePage");
    Trigger("actQueryReopen");
    EXPECT_EQ(Texts(), QStringList{"SELECT 'second'"});

    workspaces->SelectNextPage();
    ASSERT_TRUE(QDir().mkpath(FilePath("gone")));
    Answer("butYes"); // gone: overwrite
    Trigger("actWindowCloseAllPages");
}

TEST_F(TManagerSessionTest, WithoutASessionATextGoesOnlyWhenTheUserSaysSo)
{
    // A file where the folder of the sessions has to be.
    ASSERT_TRUE(QDir().mkpath(QFileInfo(TAppPathUtils::SessionsFolder()).path()));
    QDir(TAppPathUtils::SessionsFolder()).removeRecursively();
    TFileUtils::WriteBinary(TAppPathUtils::SessionsFolder(), "");
    ExpectError("sessions");
    OpenWorkspace();
    NewQuery("SELECT 'precious'");
    Answer("butNo");
    Trigger("actWindowClosePage");
    EXPECT_EQ(Texts(), QStringList{"SELECT 'precious'"});
    Answer("butNo");
    Trigger("actCloseConnection");
    EXPECT_EQ(Texts(), QStringList{"SELECT 'precious'"});
    NewQuery("");
    Trigger("actWindowClosePage");
    EXPECT_EQ(Texts().size(), 1) << "nothing is asked about nothing";
    Answer("butYes");
    Trigger("actWindowClosePage");
    EXPECT_TRUE(Texts().isEmpty());
    CloseWorkspace();
}

TEST_F(TManagerSessionTest, ADamagedFileIsToldAndKept)
{
    ASSERT_TRUE(QDir().mkpath(TAppPathUtils::SessionsFolder()));
    TFileUtils::WriteBinary(SessionFile(".xml"), "<config><pages");
    ExpectError("damaged");
    OpenWorkspace();
    NewQuery("SELECT 'new'");
    CloseWorkspace();
    const QStringList aside =
        QDir(TAppPathUtils::SessionsFolder()).entryList({"*.damaged-*"}, QDir::Files);
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(Read(TAppPathUtils::SessionsFolder() + '/' + aside[0]), "<config><pages");
    OpenWorkspace();
    EXPECT_EQ(Texts(), QStringList{"SELECT 'new'"});
}

TEST_F(TManagerSessionTest, TwoWorkspacesOfOneProfileLoseNothing)
{
    OpenWorkspace();
    NewQuery("SELECT 'of the first'");
    OpenWorkspace();
    NewQuery("SELECT 'of the second'");
    Trigger("actCloseConnection"); // the second
    CloseWorkspace();              // the first; the last to close wins
    OpenWorkspace();
    EXPECT_EQ(Texts(), QStringList{"SELECT 'of the first'"});
    Trigger("actQueryReopen");
    EXPECT_EQ(Texts(), (QStringList{"SELECT 'of the first'", "SELECT 'of the second'"}));
}

} // namespace
