#include "shell/uWorkbenchFixture.h"

#include "app/uAppPathUtils.h"
#include "app/uAppProfiles.h"
#include "core/uServerProfile.h"
#include "pages/query/uQueryPageFrame.h"
#include "shell/uAppStart.h"
#include "shell/uMainDataModule.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

TWorkbenchTest::TWorkbenchTest(TTestServer &server) : TServerTest(server)
{
    TAppPathUtils::SetBaseFolders(FFolder.filePath("data"), FFolder.filePath("documents"),
                                  KORVANE_SOURCE_DIR);
    TAppStart::Prepare();
    const TMainDataModule dataModule;
    OpenWindow();
}

TWorkbenchTest::~TWorkbenchTest()
{
    CloseWindow();
    TAppStart::Finish();
}

void TWorkbenchTest::OpenWindow()
{
    Window = std::make_unique<TMainForm>();
    DismissProfiles(); // it opens by itself at the first idle moment
    Window->show();
    TTestLoop::RunUntil([this] { return Driver.Pending() == 0; });
    TTestLoop::Settle();
    TGuiTools::Show(Window.get());
}

void TWorkbenchTest::CloseWindow()
{
    Window->close();
    TTestLoop::Settle();
    Window.reset();
}

TDbmConnectionProfile TWorkbenchTest::Profile(const QString &database) const
{
    TDbmConnectionProfile profile = ServerProfile(Server());
    profile.Database = database;
    return profile;
}

TManagerFrame &TWorkbenchTest::OpenWorkspace(const QString &database)
{
    return OpenWorkspaceOn(Profile(database));
}

TManagerFrame &TWorkbenchTest::OpenWorkspaceOn(const TDbmConnectionProfile &profile)
{
    auto manager = TDbmManager::Create();
    manager->SetParams(profile);
    manager->Connect();
    Window->NewConnection(std::move(manager), "Test server", "{id}");
    return *Window->GetActiveManagerFrame();
}

TManagerFrame &TWorkbenchTest::OpenWorkspaceBehind(const TTcpProxy &proxy)
{
    TDbmConnectionProfile profile = Profile();
    profile.Port = proxy.Port();
    return OpenWorkspaceOn(profile);
}

void TWorkbenchTest::CloseWorkspace()
{
    DismissProfiles();
    Trigger("actCloseConnection");
    ASSERT_TRUE(TTestLoop::RunUntil([this] { return Driver.Pending() == 0; }));
}

TAppManagerPageUtils &TWorkbenchTest::Pages()
{
    return Workspace().PageUtils();
}

TQueryPageFrame &TWorkbenchTest::QueryPage()
{
    auto *page = qobject_cast<TQueryPageFrame *>(Pages().GetActivePage());
    if (!page)
        throw std::runtime_error("the active page is no query page");
    return *page;
}

TTextEditor &TWorkbenchTest::QueryEditor()
{
    return *Find<TTextEditor>(&QueryPage(), "edEditor");
}

TQueryPageFrame &TWorkbenchTest::NewQuery(const QString &text)
{
    Trigger("actQueryNew");
    QueryEditor().PasteText(text);
    return QueryPage();
}

TQueryPageFrame &TWorkbenchTest::RunQuery(const QString &text)
{
    QueryEditor().SelectAll();
    QueryEditor().PasteText(text);
    Trigger("actQueryExecute");
    return QueryPage();
}

bool TWorkbenchTest::IsEnabled(const QString &action) const
{
    return Find<QAction>(Window.get(), action)->isEnabled();
}

void TWorkbenchTest::Answer(const QString &button)
{
    Driver.Expect([button](QWidget *window) { TGuiTools::Click(window, button); });
}

void TWorkbenchTest::DismissProfiles()
{
    Driver.Expect("frmProfiles", [](QWidget *form) { TGuiTools::Click(form, "butClose"); });
}

void TWorkbenchTest::ChooseDatabase(const QString &name)
{
    Driver.Expect("Select Database", [name](QWidget *dialog) {
        TGuiTools::Choose(Find<QAbstractItemView>(dialog, "lvList"), name);
        TGuiTools::Click(dialog, "butOK");
    });
}

void TWorkbenchTest::StoreProfile(const QString &alias, const TDbmConnectionProfile &connection)
{
    TAppProfiles profiles;
    profiles.Clear();
    auto profile = std::make_shared<TAppProfile>();
    profile->Alias = alias;
    profile->Id = TAppProfile::NewId();
    profile->ConnectionProfile = connection;
    profiles.Add(profile);
    profiles.Write();
}

void TWorkbenchTest::ExpectJob(const QString &title)
{
    Driver.Expect("frmWorker", [this, title](QWidget *job) {
        const QString end = " - Finished";
        EXPECT_TRUE(TTestLoop::RunUntil([&] { return job->windowTitle().endsWith(end); }));
        if (!title.isEmpty()) {
            EXPECT_EQ(job->windowTitle(), title + end);
        }
        JobLog = Find<QPlainTextEdit>(job, "memLog")->toPlainText();
        EXPECT_EQ(Find<QPushButton>(job, "butClose")->text(), "Close");
        TGuiTools::Click(job, "butClose");
    });
}

void TWorkbenchTest::ExpectError(const QString &text)
{
    Driver.Expect("frmErrorBox", [text](QWidget *box) {
        QString shown;
        for (const QPlainTextEdit *view : box->findChildren<QPlainTextEdit *>())
            shown += view->toPlainText() + u'\n';
        for (const QLabel *label : box->findChildren<QLabel *>())
            shown += label->text() + u'\n';
        EXPECT_TRUE(shown.contains(text)) << shown.toStdString();
        static_cast<QDialog *>(box)->accept();
    });
}
