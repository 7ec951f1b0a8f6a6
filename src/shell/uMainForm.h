#pragma once

#include <QMainWindow>
#include <memory>

class QLabel;
class TCheckUpdates;
class TDbmManager;
class TMainFormMenuUtils;
class TManagerFrame;
class TPageManagerFrame;

/// The main window: the menu and one tab per open connection.
class TMainForm : public QMainWindow
{
    Q_OBJECT
public:
    TMainForm();
    ~TMainForm() override;

    void NewConnection(std::unique_ptr<TDbmManager> manager, const QString &profileName,
                       const QString &profileId);
    void CloseActiveConnection();
    void CloseAllConnections();
    TManagerFrame *GetActiveManagerFrame() const; // nullptr if no tab is open

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void FirstShow();
    void BuildPageManager();
    void ConnectionsChanged();
    void CheckUpdates();
    void FirstIdle();
    void TearDown();
    bool HandleGlobalKey(int key, Qt::KeyboardModifiers modifiers);

    TPageManagerFrame *FManagersPageManager = nullptr; // child widget
    std::unique_ptr<TMainFormMenuUtils> FMenuUtils;
    std::unique_ptr<TCheckUpdates> FCheckUpdates;
    QLabel *lblNewVersion = nullptr; // child widget, hidden without a newer version
    bool FShown = false;
    bool FIdleHandled = false;
    bool FCloseExecuted = false;
};
