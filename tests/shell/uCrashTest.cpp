#include "app/uAppPathUtils.h"
#include "pages/query/uQueryPageFrame.h"
#include "shell/uWorkbenchFixture.h"
#include "support/uFileUtils.h"

#include <QAbstractScrollArea>
#include <QProcess>
#include <QTest>

namespace {

// The folder of the test, in the process that it starts and kills.
const char Crashing[] = "KORVANE_TEST_CRASHING";

class TCrashTest : public TWorkbenchTest
{
protected:
    void Type(const QString &text)
    {
        QTest::keyClicks(QueryEditor().findChild<QAbstractScrollArea *>(), text);
    }
    /// The workbench that is killed: keys pressed in its editors, and no orderly end.
    void TypeUntilKilled(const QString &folder)
    {
        TAppPathUtils::SetBaseFolders(folder + "/data", folder + "/documents", KORVANE_SOURCE_DIR);
        OpenWorkspace();
        Trigger("actQueryNew");
        Type("SELECT 'typed'");
        Pages().ShowQueryFromFile(folder + "/file.sql", {}, 0, true);
        Type("/* changed */ ");
        TTestLoop::RunUntil([] { return false; });
    }
    static QByteArray Read(const QString &fileName)
    {
        QByteArray bytes;
        if (TFileUtils::Exists(fileName))
            TFileUtils::ReadBinary(fileName, bytes);
        return bytes;
    }
};

TEST_F(TCrashTest, WhatWasTypedIsThereAfterTheProcessWasKilled)
{
    if (qEnvironmentVariableIsSet(Crashing))
        return TypeUntilKilled(qEnvironmentVariable(Crashing));
    TFileUtils::WriteBinary(FilePath("file.sql"), "SELECT 2");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(Crashing, FilePath("."));
    QProcess child;
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    child.start(QCoreApplication::applicationFilePath(), {"--gtest_filter=TCrashTest.*"});
    const QString journal = TAppPathUtils::SessionsFolder() + "/{id}.0.journal";
    const QByteArray last = QByteArray("/* changed */ SELECT 2").toHex();
    ASSERT_TRUE(TTestLoop::RunUntil([&] {
        return Read(journal).toLower().contains(last) || child.state() == QProcess::NotRunning;
    }));
    ASSERT_EQ(child.state(), QProcess::Running);
    child.kill();
    child.waitForFinished();

    OpenWorkspace();
    TPageManagerFrame &pages = Workspace().PageManager();
    ASSERT_EQ(pages.PageCount(), 2);
    const auto text = [&](int page) {
        return qobject_cast<TQueryPageFrame *>(pages.GetPageByIndex(page))->GetText();
    };
    EXPECT_EQ(text(0), "SELECT 'typed'");
    EXPECT_EQ(text(1), "/* changed */ SELECT 2");
    EXPECT_EQ(Read(FilePath("file.sql")), "SELECT 2") << "nobody saved it";
}

} // namespace
