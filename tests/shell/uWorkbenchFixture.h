#pragma once

#include "core/uDbmConnectionProfile.h"
#include "shell/uMainForm.h"
#include "uGuiTools.h"
#include "uModalDriver.h"
#include "uTestDatabase.h"
#include "uTestLoop.h"
#include "uTestPrint.h"

#include <QTemporaryDir>
#include <memory>

class TManagerFrame;
class TPageFrame;
class TQueryPageFrame;

/// The whole workbench in the test's process: the real window on the offscreen platform, the real
/// server, folders of its own. Dialogs are answered by Driver.
class TWorkbenchTest : public TServerTest
{
protected:
    TWorkbenchTest();
    ~TWorkbenchTest() override;

    /// The test server's profile; `database` binds it.
    TDbmConnectionProfile Profile(const QString &database = {}) const;
    /// Opens a connected workspace without the profiles dialog.
    TManagerFrame &OpenWorkspace(const QString &database = {});
    TManagerFrame &OpenWorkspaceOn(const TDbmConnectionProfile &profile);
    /// The active page; throws when it is no query page.
    TQueryPageFrame &QueryPage();
    TQueryPageFrame &NewQuery(const QString &text);
    /// Types the text into the active query page's editor and runs it by the menu.
    TQueryPageFrame &RunQuery(const QString &text);
    void Trigger(const QString &action) { TGuiTools::Trigger(Window.get(), action); }
    bool IsEnabled(const QString &action) const;
    /// Expects the shell's error box with this text in it, and closes it.
    void ExpectError(const QString &text);
    QString FilePath(const QString &name) const { return FFolder.filePath(name); }

    TModalDriver Driver;
    std::unique_ptr<TMainForm> Window;

private:
    QTemporaryDir FFolder;
};
