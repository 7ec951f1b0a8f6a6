#pragma once

#include "core/uDbmConnectionProfile.h"
#include "model/uDbmManager.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uMainForm.h"
#include "shell/uManagerFrame.h"
#include "shell/uPageManagerFrame.h"
#include "uGuiTools.h"
#include "uModalDriver.h"
#include "uTcpProxy.h"
#include "uTestDatabase.h"
#include "uTestLoop.h"
#include "uTestPrint.h"
#include "widgets/uTextEditor.h"

#include <QTemporaryDir>
#include <memory>

class TQueryPageFrame;

/// The whole workbench in the test's process: the real window on the offscreen platform, the real
/// server, folders of its own. Dialogs are answered by Driver.
class TWorkbenchTest : public TServerTest
{
protected:
    explicit TWorkbenchTest(TTestServer &server = TTestServer::Instance());
    ~TWorkbenchTest() override;

    /// As the program starts and ends it; the profiles dialog that comes up is dismissed.
    void OpenWindow();
    void CloseWindow();
    /// The test server's profile; `database` binds it.
    TDbmConnectionProfile Profile(const QString &database = {}) const;
    /// Opens a connected workspace without the profiles dialog.
    TManagerFrame &OpenWorkspace(const QString &database = {});
    TManagerFrame &OpenWorkspaceOn(const TDbmConnectionProfile &profile);
    /// On the test server, by way of the proxy.
    TManagerFrame &OpenWorkspaceBehind(const TTcpProxy &proxy);
    /// Closes the last workspace that is open, and the profiles dialog that comes then.
    void CloseWorkspace();
    TManagerFrame &Workspace() { return *Window->GetActiveManagerFrame(); }
    TAppManagerPageUtils &Pages();
    /// The active page; throws when it is no query page.
    TQueryPageFrame &QueryPage();
    TTextEditor &QueryEditor();
    TQueryPageFrame &NewQuery(const QString &text);
    /// Types the text into the active query page's editor and runs it by the menu.
    TQueryPageFrame &RunQuery(const QString &text);
    void Trigger(const QString &action) { TGuiTools::Trigger(Window.get(), action); }
    bool IsEnabled(const QString &action) const;
    /// Presses this button of the next window.
    void Answer(const QString &button);
    void DismissProfiles();
    /// In the dialog that asks for one.
    void ChooseDatabase(const QString &name);
    /// The profile is the only one of the file.
    static void StoreProfile(const QString &alias, const TDbmConnectionProfile &connection);
    /// A job's window, of this title unless empty: waits for the end, keeps what the job said and
    /// closes the window.
    void ExpectJob(const QString &title = {});
    /// Expects the shell's error box with this text in it, and closes it.
    void ExpectError(const QString &text);
    QString FilePath(const QString &name) const { return FFolder.filePath(name); }

    TModalDriver Driver;
    std::unique_ptr<TMainForm> Window;
    QString JobLog;

private:
    QTemporaryDir FFolder;
};
