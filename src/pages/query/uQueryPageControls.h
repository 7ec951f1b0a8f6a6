#pragma once

#include <QObject>

class QAction;
class QLabel;
class QPlainTextEdit;
class QSplitter;
class QStackedWidget;
class QToolBar;
class QVBoxLayout;
class QWidget;
class TDropDownCombo;

enum TQueryResultTab { qrtResult, qrtExplain, qrtLog };

/// The controls of a query page and their places; the page gives them their work.
class TQueryPageControls : public QObject
{
    Q_OBJECT
public:
    explicit TQueryPageControls(QWidget *page);

    void SetUseVisible(bool visible);
    void SetResultHeight(int height); // pixels
    int ResultHeight() const;
    void ShowError(const QString &text); // an empty text hides the box
    void SetStatus(const QString &rows, const QString &time, const QString &fileName);
    void SetActiveTab(int tab);
    int ActiveTab() const;

    QAction *actExecute = nullptr;
    QAction *actExecuteSelected = nullptr;
    QAction *actSave = nullptr;
    QAction *actSaveAs = nullptr;
    QAction *actDuplicate = nullptr;
    QAction *actExportAsCVS = nullptr;
    QAction *actExportAsText = nullptr;
    QAction *actGotoResult = nullptr;
    QAction *actGotoExplain = nullptr;
    QAction *actGotoLog = nullptr;
    TDropDownCombo *cbxUse = nullptr;
    QWidget *panEditor = nullptr;
    QWidget *tshTabs[3] = {};

private:
    QAction *MakeAction(const char *name, const QString &caption, const QString &hint,
                        const char *icon);
    void MakeActions();
    QWidget *MakeEditorArea();
    QWidget *MakeResultArea();
    QToolBar *MakeEditorToolBar(QWidget *parent);
    QToolBar *MakeResultToolBar(QWidget *parent);
    void MakeErrorBox(QWidget *parent, QVBoxLayout *column);
    QWidget *MakeStatusBar(QWidget *parent);

    QWidget *FPage;
    QAction *FUseActions[2] = {};
    QSplitter *splResult = nullptr;
    QStackedWidget *pgcResult = nullptr;
    QPlainTextEdit *memError = nullptr;
    QLabel *labRows = nullptr;
    QLabel *labTime = nullptr;
    QLabel *labFileName = nullptr;
};
