#include "app/uAppSession.h"

#include "support/uException.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

const QString Id = QStringLiteral("{5A0B}");

class TAppSessionTest : public testing::Test
{
protected:
    QString Folder() const { return FFolder.path(); }
    QString File() const { return Folder() + '/' + Id + ".xml"; }
    QStringList Files(const QString &pattern) const
    {
        return QDir(Folder()).entryList({pattern}, QDir::Files);
    }

    static void WriteQuery(TAppSession &session, int index, const QString &text)
    {
        const QString path = "pages.page_" + QString::number(index);
        session.Config().SetValue(path, "id", QStringLiteral("query"));
        session.Config().SetValue(path, "text", text, true);
    }
    static QString QueryOf(const TAppSession &session, int index)
    {
        return const_cast<TAppSession &>(session).Config().GetValue(
            "pages.page_" + QString::number(index), "text", QString(), true);
    }
    static QStringList RecoveredTexts(TAppSession &session)
    {
        QStringList texts;
        for (const QString &name : session.Recovery().FileNames()) {
            QString text;
            TFileUtils::ReadText(name, QString(), text);
            texts.append(text);
        }
        texts.sort();
        return texts;
    }

    QTemporaryDir FFolder;
};

TEST_F(TAppSessionTest, KeepsValuesAndLeavesOneFileBehind)
{
    TTableDataSessionData data;
    {
        TAppSession session;
        session.Open(Folder(), Id);
        EXPECT_EQ(session.ReadSelectedDatabase(), "");
        session.ReadTableDataFrame("pages.page_0", data);
        EXPECT_EQ(data, TAppSession::GetDefaultDataPageData());
        session.WriteSelectedDatabase(QStringLiteral("a.b \"ж\""));
        session.WriteSqlPath("/tmp");
        data = {
            true, true, true, 50, 7, QStringLiteral("na me"), false, QStringLiteral("a < '\n'")};
        session.WriteTableDataFrame("pages.page_0", data);
        session.CreateTablePageSession("a.b", "t")->WriteDataShow(true);
        session.Close();
    }
    EXPECT_EQ(QDir(Folder()).entryList(QDir::Files), QStringList{Id + ".xml"});

    TAppSession session;
    session.Open(Folder(), Id);
    EXPECT_EQ(session.ReadSelectedDatabase(), QStringLiteral("a.b \"ж\""));
    EXPECT_EQ(session.ReadSqlPath(), "/tmp");
    TTableDataSessionData read;
    session.ReadTableDataFrame("pages.page_0", read);
    EXPECT_EQ(read, data);
    EXPECT_TRUE(session.CreateTablePageSession("a.b", "t")->ReadDataShown());
    EXPECT_FALSE(session.CreateTablePageSession("a", "t")->ReadDataShown());
    EXPECT_FALSE(session.IsRestored());
}

TEST_F(TAppSessionTest, TakesUpTheJournalOfACrash)
{
    {
        TAppSession session;
        session.Open(Folder(), Id);
        WriteQuery(session, 0, "select 'old'");
        session.Close();
    }
    {
        TAppSession crashed;
        crashed.Open(Folder(), Id);
        WriteQuery(crashed, 0, "select 'new'");
        crashed.SaveJournal();
        WriteQuery(crashed, 0, "select 'too young for the journal'");
    }
    TAppSession session;
    session.Open(Folder(), Id);
    EXPECT_TRUE(session.IsRestored());
    EXPECT_EQ(QueryOf(session, 0), "select 'new'");
    EXPECT_EQ(RecoveredTexts(session), QStringList{"select 'old'"});
    session.Close();
    EXPECT_EQ(Files("*.journal") + Files("*.lock"), QStringList());
}

TEST_F(TAppSessionTest, TheJournalIsWrittenBesideTheWork)
{
    const QString large(5 << 20, u'x');
    TConfigChanges pages;
    pages.ClearNode("pages");
    pages.SetValue("pages.page_0", "id", QStringLiteral("query"));
    pages.SetValue("pages.page_0", "text", large, true);
    pages.SetValue("pages.page_0", "result_height", 7);
    pages.SetValue("pages.page_0", "active", true);
    {
        TAppSession crashed;
        crashed.Open(Folder(), Id);
        WriteQuery(crashed, 0, "select 'of the last start'");
        WriteQuery(crashed, 1, "select 'closed'");
        crashed.WriteSelectedDatabase("d");
        crashed.StartJournal(pages);
        WriteQuery(crashed, 0, "select 'while it is written'");
        crashed.FinishJournal();
    }
    {
        TAppSession session;
        session.Open(Folder(), Id);
        EXPECT_EQ(QueryOf(session, 0), large);
        EXPECT_EQ(session.Config().GetValue("pages.page_0", "result_height", 0), 7);
        EXPECT_TRUE(session.Config().GetValue("pages.page_0", "active", false));
        EXPECT_EQ(session.Config().GetChildCount("pages"), 1);
        EXPECT_EQ(session.ReadSelectedDatabase(), "d");
        session.StartJournal(pages);
        session.Close();
    }
    EXPECT_EQ(Files("*.journal"), QStringList()) << "nothing is written behind the end";

    // What the thread could not do is told by who asks next.
    const QString journal = Folder() + '/' + Id + ".0.journal";
    TAppSession refused;
    refused.Open(Folder(), Id);
    QFile::remove(journal);
    ASSERT_TRUE(QDir().mkpath(journal + "/a folder in its place"));
    refused.StartJournal(TConfigChanges());
    refused.FinishJournal(); // the same as before: nothing to write
    pages.SetValue("pages.page_0", "active", false);
    refused.StartJournal(pages);
    EXPECT_THROW(refused.FinishJournal(), EException);
    refused.StartJournal(pages);
    EXPECT_THROW(refused.SaveJournal(pages), EException);
    QDir(journal).removeRecursively();
    EXPECT_NO_THROW(refused.SaveJournal(pages));
}

TEST_F(TAppSessionTest, AWorkspaceStillOpenKeepsItsJournal)
{
    TAppSession first;
    first.Open(Folder(), Id);
    WriteQuery(first, 0, "select 1");
    first.SaveJournal();

    TAppSession second;
    second.Open(Folder(), Id);
    EXPECT_FALSE(second.IsRestored());
    EXPECT_EQ(Files("*.journal").size(), 2);

    WriteQuery(second, 0, "select 2");
    first.Close();
    second.Close();
    TAppSession third;
    third.Open(Folder(), Id);
    EXPECT_EQ(QueryOf(third, 0), "select 2");
    EXPECT_EQ(RecoveredTexts(third), QStringList{"select 1"});
}

TEST_F(TAppSessionTest, PutsADamagedFileAsideAndGoesOn)
{
    const QByteArray damaged("<config><group name='pages'");
    TFileUtils::WriteBinary(File(), damaged);
    TAppSession session;
    session.Open(Folder(), Id);
    ASSERT_FALSE(session.DamagedFile().isEmpty());
    QByteArray kept;
    TFileUtils::ReadBinary(session.DamagedFile(), kept);
    EXPECT_EQ(kept, damaged);
    WriteQuery(session, 0, "select 1");
    session.Close();

    TAppSession next;
    next.Open(Folder(), Id);
    EXPECT_EQ(next.DamagedFile(), "");
    EXPECT_EQ(QueryOf(next, 0), "select 1");
}

TEST_F(TAppSessionTest, GivesClosedTextsBackNewestFirst)
{
    TAppRecovery recovery;
    recovery.SetParams(Folder(), Id);
    EXPECT_TRUE(recovery.IsEmpty());
    for (const char *text : {"select 'é\r\n'", "select 2", "select 2"})
        recovery.Store(QString::fromUtf8(text));
    EXPECT_EQ(recovery.FileNames().size(), 2);

    QString text;
    QString fileName;
    for (const char *expected : {"select 2", "select 'é\r\n'"}) {
        ASSERT_TRUE(recovery.TryGetNewest(text, fileName));
        EXPECT_EQ(text, QString::fromUtf8(expected));
        EXPECT_EQ(QFile::permissions(fileName) & (QFile::ReadGroup | QFile::ReadOther), 0);
        recovery.Remove(fileName);
    }
    EXPECT_FALSE(recovery.TryGetNewest(text, fileName));
}

} // namespace
