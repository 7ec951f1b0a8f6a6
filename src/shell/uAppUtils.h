#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class QWidget;
class TDbmManager;
class TManagerFrame;
class TPageFrame;

/// The way to the main window for everything that does not know its class. One instance; the window
/// installs itself.
class TAppUtils
{
public:
    /// What the main window offers; unset while there is no window.
    struct TMainWindow
    {
        QWidget *Window = nullptr; // owner of dialogs
        std::function<void(std::unique_ptr<TDbmManager>, const QString &profileName,
                           const QString &profileId)>
            NewConnection;
        std::function<void()> CloseActiveConnection;
        std::function<TManagerFrame *()> GetActiveManagerFrame;
    };

    static TAppUtils &Instance();
    void SetMainWindow(TMainWindow window) { FMainWindow = std::move(window); }
    /// Owner of modal windows; nullptr before the window exists.
    QWidget *MainWindow() const { return FMainWindow.Window; }

    void Exit();
    /// Runs the profiles dialog and, on success, adds the connection's tab.
    void OpenConnection();
    void CloseConnection();
    bool IsConnectionOpened() const;
    void Refresh();
    void CloseActivePage();
    void CloseAllPages();
    void ReopenClosedQuery();
    int GetActivePage() const; // index, -1 without one
    void SetActivePage(int index);
    QStringList GetPagesCaption() const;
    void HomePage();
    void About();
    TManagerFrame *GetActiveManager() const; // nullptr without a connection

private:
    TAppUtils() = default;
    TMainWindow FMainWindow;
};
