#pragma once

#include <QObject>

class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QStackedWidget;
class QToolBar;
class QWidget;

/// Actions and controls of a table's data page, laid out on the page. Children of the page.
class TTableDataControls : public QObject
{
    Q_OBJECT
public:
    explicit TTableDataControls(QWidget *page);

    QAction *actCreate, *actUpdate, *actDelete, *actEditMode, *actShowText, *actFilter;
    QAction *actFirstPage, *actPrevPage, *actNextPage, *actLastPage, *actRefresh;
    QAction *actTruncate, *actOpenObject; // on no tool bar
    QLineEdit *edPageNum = nullptr;
    QLineEdit *edPageCount = nullptr;
    QComboBox *cbxRows = nullptr;
    QWidget *tshData = nullptr;   // for the grid
    QWidget *panFilter = nullptr; // for the filter, hidden at first

    void ShowError(const QString &text);
    void ShowData();
    bool IsErrorShown() const;
    void SetStatus(const QString &text);

private:
    QAction *MakeAction(const char *name, const QString &caption, const QString &hint,
                        const char *icon);
    void MakeActions();
    QToolBar *MakeToolBar();
    void AddPageControls(QToolBar &toolBar);
    QLineEdit *MakePageEdit(QToolBar &toolBar, const char *name, const QString &caption);

    QWidget *FPage;
    QStackedWidget *pcData = nullptr;
    QPlainTextEdit *memError = nullptr;
    QLabel *labRows = nullptr;
};
