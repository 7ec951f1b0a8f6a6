#pragma once

#include "shell/uPageFrame.h"

#include <memory>

class QLabel;
class QSplitter;
class QTabWidget;
enum TTextDrop : int;
class TAppManagerPageUtils;
class TAppManagerSessionUtils;
class TAppManagerUtils;
class TAppSession;
class TDbmManager;
class TManagerJournal;
class TManagerObjectsFrame;
class TPageManagerFrame;

/// The workspace of one connection: an area for panels at the left, the tabs of its pages at the
/// right, a status bar. Owns the connection.
class TManagerFrame : public TPageFrame
{
    Q_OBJECT
public:
    explicit TManagerFrame(QWidget *owner);
    ~TManagerFrame() override;

    void Initialize(std::unique_ptr<TDbmManager> manager, const QString &profileName,
                    const QString &sessionId);
    /// Marks everything stale and redraws what is visible; the rest is read when it is looked at.
    void RefreshManager();
    /// Takes the note on the last read that failed away, since what follows reads again.
    void ForgetNotRead();
    QStringList GetPagesCaption() const;
    int GetActivePageIndex() const;
    void SetActivePageIndex(int value);
    void CloseActivePage();
    void CloseAllPages();
    bool HasClosedQueries() const;
    void ReopenClosedQuery();

    TDbmManager &Manager() { return *FManager; }
    /// As of the start of the workspace: nothing is asked for it.
    const QString &ServerVersion() const { return FServerVersion; }
    bool IsTunnelling() const;
    TAppManagerPageUtils &PageUtils() { return *FPageUtils; }
    TAppManagerUtils &Utils() { return *FUtils; }
    TPageManagerFrame &PageManager() { return *FPageManagerFrame; }
    const QString &SessionId() const { return FSessionId; }

Q_SIGNALS:
    /// Ahead of every statement of this workspace.
    void OnCommandBeforeExecute(const QString &CommandText);

protected:
    QString DoGetTitle() const override;
    void DoCreate() override;
    void DoLoad() override;
    bool DoCloseQuery() override;
    void DoUnload() override;
    void DoProcess() override;

private:
    void BuildLayout();
    void HookManager();
    void LoadPanels();
    void OpenSession();
    void WriteSession();
    bool SaveSession();
    void CloseSession();
    bool HasUnsavedTexts() const;
    TTextDrop KeepText(const QString &text);
    void UpdateHint();
    void FillStatusBar();

    std::unique_ptr<TDbmManager> FManager;
    QString FProfileName;
    QString FSessionId;
    TPageManagerFrame *FPageManagerFrame = nullptr; // child widget
    std::unique_ptr<TAppManagerPageUtils> FPageUtils;
    std::unique_ptr<TAppManagerUtils> FUtils;
    QString FServerVersion;
    std::unique_ptr<TAppSession> FSession; // the three are there while the session is open
    std::unique_ptr<TAppManagerSessionUtils> FSessionUtils;
    std::unique_ptr<TManagerJournal> FJournal;
    bool FIsClosing = false; // as a whole: its session holds the texts of its pages
    QSplitter *splMain = nullptr;
    QTabWidget *panPanels = nullptr;
    TManagerObjectsFrame *FObjectsFrame = nullptr; // child widget
    QWidget *panPages = nullptr;
    QLabel *labHint = nullptr;
    QLabel *labProfile = nullptr;
    QLabel *labServerVersion = nullptr;
    QLabel *labNotRead = nullptr; // the last read that failed
};
