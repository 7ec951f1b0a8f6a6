#pragma once

#include "pages/data/uTableDataFrame.h"
#include "pages/structure/uTablePageFrame.h"
#include "shell/uWorkbenchFixture.h"
#include "widgets/uDataSetGrid.h"
#include "widgets/uVerticalGrid.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

/// The data page of a table in the real window. `FStatements` has what was sent since Open.
class TTableDataTest : public TWorkbenchTest
{
protected:
    TTableDataFrame &Open(const QString &table)
    {
        if (!Window->GetActiveManagerFrame())
            OpenWorkspace();
        return Show(Database(), table);
    }
    /// The same in the workspace that is open.
    TTableDataFrame &Show(const TTestDatabase &database, const QString &table)
    {
        FStatements.clear();
        QObject::connect(&Workspace(), &TManagerFrame::OnCommandBeforeExecute, &Workspace(),
                         [this](const QString &text) { FStatements += text; });
        Pages().ShowTable(database.Name(), table, true);
        FFrame = Pages().GetActivePage()->findChild<TTableDataFrame *>();
        return *FFrame;
    }

    template <typename T>
    T *Part(const char *name)
    {
        return Find<T>(FFrame, name);
    }
    TDataSetGrid &Grid() { return *Part<TDataSetGrid>("grdData"); }
    QString Cell(int row, int column)
    {
        return Grid().model()->index(row, column).data().toString();
    }
    void Focus(int row, int column = 0)
    {
        Grid().setCurrentIndex(Grid().model()->index(row, column));
    }
    int RowCount() { return Grid().model()->rowCount(); }
    void Run(const char *action) { Part<QAction>(action)->trigger(); }
    bool Can(const char *action) { return Part<QAction>(action)->isEnabled(); }
    QString Status() { return Part<QLabel>("labRows")->text(); }
    QString PageNumber() { return Part<QLineEdit>("edPageNum")->text(); }
    /// What the last UPDATE sets.
    QString LastUpdate()
    {
        return FStatements.filter("UPDATE ").last().section(" WHERE", 0, 0).section(" SET ", 1);
    }

    void TypePage(const QString &text)
    {
        auto *edit = Part<QLineEdit>("edPageNum");
        edit->selectAll();
        QTest::keyClicks(edit, text);
        QTest::keyClick(edit, Qt::Key_Return);
    }
    void Filter(const QString &text)
    {
        auto *editor = Find<TTextEditor>(Part<QWidget>("panFilter"), "edEditor");
        editor->SelectAll();
        editor->PasteText(text);
        Run("actApply");
    }
    /// Works on the next record dialog, then presses OK.
    void OnRecord(const std::function<void(TVerticalGrid &)> &work)
    {
        Driver.Expect([work](QWidget *dialog) {
            work(*Find<TVerticalGrid>(dialog, "vgRecord"));
            TGuiTools::Click(dialog, "butOK");
        });
    }
    /// By the action of the record's dialog.
    static void SetNull(TVerticalGrid &grid, const QString &row)
    {
        QFocusEvent focus(QEvent::FocusIn); // the window is not the active one here
        QApplication::sendEvent(Find<QWidget>(&grid, row), &focus);
        Find<QAction>(grid.window(), "actSetNull")->trigger();
    }
    static void Type(TVerticalGrid &grid, const QString &row, const QString &text)
    {
        auto *control = Find<QLineEdit>(&grid, row);
        control->selectAll();
        QTest::keyClick(control, Qt::Key_Delete);
        QTest::keyClicks(control, text);
        QTest::keyClick(control, Qt::Key_Tab);
    }

    QStringList FStatements;
    TTableDataFrame *FFrame = nullptr;
};
