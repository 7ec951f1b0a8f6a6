#include "app/uAppPathUtils.h"
#include "pages/query/uQueryPageFrame.h"
#include "shell/uAppStart.h"
#include "shell/uWorkbenchFixture.h"
#include "support/uFileUtils.h"
#include "uTestRole.h"

#include <QAbstractScrollArea>
#include <QProcess>
#include <QTest>

namespace {

const QString Id = QStringLiteral("{crash}");

void TypeInto(const TMainForm &window, const QString &text)
{
    TPageFrame *page = window.GetActiveManagerFrame()->PageUtils().GetActivePage();
    auto *editor = Find<TTextEditor>(page, "edEditor");
    QTest::keyClicks(editor->findChild<QAbstractScrollArea *>(), text);
}

// A workbench of its own: the window as the program shows it, keys pressed in its editors, and no
// orderly end. Arguments: folder, port of the server, file, text, change of the file.
const TTestRole Role("workbench", [](const QStringList &arguments) {
    const QString &folder = arguments[0];
    TAppPathUtils::SetBaseFolders(folder + "/data", folder + "/documents", KORVANE_SOURCE_DIR);
    TAppStart::Prepare();
    TModalDriver driver;
    driver.Expect("frmProfiles", [](QWidget *form) { TGuiTools::Click(form, "butClose"); });
    TMainForm window;
    window.show();
    TTestLoop::RunUntil([&] { return driver.Pending() == 0; });
    TDbmConnectionProfile profile;
    profile.HostName = "127.0.0.1";
    profile.Port = arguments[1].toInt();
    profile.UserName = "root";
    auto manager = TDbmManager::Create();
    manager->SetParams(profile);
    manager->Connect();
    window.NewConnection(std::move(manager), "Crash", Id);
    TGuiTools::Trigger(&window, "actQueryNew");
    TypeInto(window, arguments[3]);
    window.GetActiveManagerFrame()->PageUtils().ShowQueryFromFile(arguments[2], {}, 0, true);
    TypeInto(window, arguments[4]);
    return QApplication::exec();
});

using TCrashTest = TWorkbenchTest;

TEST_F(TCrashTest, WhatWasTypedIsThereAfterTheProcessWasKilled)
{
    const QString file = FilePath("file.sql");
    TFileUtils::WriteBinary(file, "SELECT 2");
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    child.start(QCoreApplication::applicationFilePath(),
                {"--role", "workbench", FilePath("."), QString::number(Server().Port()), file,
                 "SELECT 'typed'", "/* changed */ "});
    const QString journal = TAppPathUtils::SessionsFolder() + '/' + Id + ".0.journal";
    const QByteArray last = QByteArray("/* changed */ SELECT 2").toHex();
    ASSERT_TRUE(TTestLoop::RunUntil([&] {
        QByteArray bytes;
        if (TFileUtils::Exists(journal))
            TFileUtils::ReadBinary(journal, bytes);
        return bytes.toLower().contains(last) || child.state() == QProcess::NotRunning;
    }));
    ASSERT_EQ(child.state(), QProcess::Running);
    child.kill();
    child.waitForFinished();
    ASSERT_EQ(child.exitStatus(), QProcess::CrashExit);

    auto manager = TDbmManager::Create();
    manager->SetParams(Profile());
    manager->Connect();
    Window->NewConnection(std::move(manager), "Crash", Id);
    TPageManagerFrame &pages = Workspace().PageManager();
    ASSERT_EQ(pages.PageCount(), 2);
    const auto text = [&](int page) {
        return qobject_cast<TQueryPageFrame *>(pages.GetPageByIndex(page))->GetText();
    };
    EXPECT_EQ(text(0), "SELECT 'typed'");
    EXPECT_EQ(text(1), "/* changed */ SELECT 2");
    QByteArray bytes;
    TFileUtils::ReadBinary(file, bytes);
    EXPECT_EQ(bytes, "SELECT 2") << "nobody saved it";
}

} // namespace
