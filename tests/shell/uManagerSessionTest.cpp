#include "app/uAppPathUtils.h"
#include "pages/query/uQueryPageFrame.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uManagerFrame.h"
#include "shell/uPageManagerFrame.h"
#include "shell/uWorkbenchFixture.h"
#include "support/uFileUtils.h"
#include "widgets/uTextEditor.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

/// What a workspace keeps of its pages, over a close, a crash and a disk that refuses.
class TManagerSessionTest : public TWorkbenchTest
{
protected:
    TManagerFrame &Workspace() { return *Window->GetActiveManagerFrame(); }

    QString SessionFile(const QString &end) const
    {
        return TAppPathUtils::SessionsFolder() + "/{id}" + end;
    }

    void CloseWorkspace()
    {
        Driver.Expect("frmProfiles", [](QWidget *form) { TGuiTools::Click(form, "butClose"); });
        Trigger("actCloseConnection");
        ASSERT_TRUE(TTestLoop::RunUntil([this] { return Driver.Pending() == 0; }));
    }

    QString Write(const QString &name, const QString &text)
    {
        TFileUtils::WriteBinary(FilePath(name), text.toUtf8());
        return FilePath(name);
    }

    static QByteArray Read(const QString &fileName)
    {
        QByteArray bytes;
        TFileUtils::ReadBinary(fileName, bytes);
        return bytes;
    }

    void Type(const QString &text) { Find<TTextEditor>(&QueryPage(), "edEditor")->PasteText(text); }

    QStringList Texts()
    {
        QStringList texts;
        for (int i = 0; i < Workspace().PageManager().PageCount(); ++i)
            if (const auto *page =
                    qobject_cast<TQueryPageFrame *>(Workspace().PageManager().GetPageByIndex(i)))
                texts += page->GetText();
        return texts;
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
    Workspace().PageUtils().ShowQueryFromFile(Write("kept.sql", "SELECT 2"), Database().Name(), 123,
                                              true);
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

    // Pages that nobody looked at are kept like the others.
    QFile::remove(FilePath("kept.sql"));
    CloseWorkspace();
    OpenWorkspace();
    EXPECT_EQ(Texts(), (QStringList{nasty, "SELECT 3"}));
    EXPECT_EQ(Workspace().GetActivePageIndex(), 0);
}

TEST_F(TManagerSessionTest, WhatWasTypedSurvivesACrash)
{
    OpenWorkspace();
    NewQuery("SELECT 'typed'");
    Workspace().PageUtils().ShowQueryFromFile(Write("file.sql", "SELECT 2"), {}, 0, true);
    Type("/* unsaved */ ");
    const QByteArray journal = JournalWith("/* unsaved */ SELECT 2");
    ASSERT_FALSE(journal.isEmpty());
    Trigger("actQuerySave");
    Workspace().CloseAllPages();
    CloseWorkspace();
    Write("file.sql", "SELECT 2");

    // As a process that died leaves it: nobody holds its lock.
    TFileUtils::WriteBinary(SessionFile(".5.journal"), journal);
    OpenWorkspace();
    EXPECT_EQ(Texts(), (QStringList{"SELECT 'typed'", "/* unsaved */ SELECT 2"}));
    EXPECT_TRUE(IsEnabled("actQuerySave")) << "the change is not in the file";
    EXPECT_EQ(Read(FilePath("file.sql")), "SELECT 2");
    EXPECT_FALSE(QFile::exists(SessionFile(".5.journal")));
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
    Workspace().PageUtils().ShowQueryFromFile(Write("kept.sql", "SELECT 2"), {}, 0, true);
    Trigger("actWindowClosePage");
    EXPECT_FALSE(IsEnabled("actQueryReopen"));
}

TEST_F(TManagerSessionTest, ARefusedSaveKeepsTheTextInTheSession)
{
    OpenWorkspace();
    const QString folder = FilePath("gone");
    ASSERT_TRUE(QDir().mkpath(folder));
    Workspace().PageUtils().ShowQueryFromFile(Write("gone/file.sql", "SELECT 2"), {}, 0, true);
    Type("/* precious */ ");
    ASSERT_TRUE(QDir(folder).removeRecursively());
    Driver.Expect([](QWidget *box) { TGuiTools::Click(box, "butYes"); }); // gone: overwrite
    ExpectError("gone/file.sql");
    Driver.Expect([](QWidget *box) { TGuiTools::Click(box, "butYes"); }); // close all the same
    CloseWorkspace();
    OpenWorkspace();
    EXPECT_EQ(Texts(), QStringList{"/* precious */ SELECT 2"});
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
