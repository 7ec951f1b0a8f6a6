#pragma once

#include "client/uMyQuery.h"
#include "uGuiTools.h"
#include "uTestDatabase.h"
#include "uTestLoop.h"
#include "uTestPrint.h"
#include "widgets/uDataSetGrid.h"
#include "widgets/uDataSetModel.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>

/// A grid over a statement of a real server.
class TDataSetGridTest : public TServerTest
{
protected:
    TDataSetGridTest()
    {
        Connection.Server = Server().Host();
        Connection.Port = Server().Port();
        Connection.Username = Server().User();
        Connection.Database = Database().Name();
        Connection.Options.Charset = "utf8mb4";
        Connection.Options.UseUnicode = true;
        Connection.Connect();
        Grid.resize(800, 400);
        TGuiTools::Show(&Grid);
    }
    ~TDataSetGridTest() override { Grid.DataModel()->SetDataset(nullptr); }

    void Open(const QString &sql)
    {
        Query.SetSQL(sql);
        Query.Execute();
        Grid.DataModel()->SetDataset(&Query);
        Grid.RebuildColumns();
        if (Query.RecordCount() > 0)
            Grid.setCurrentIndex(Cell(0, 0));
    }
    QModelIndex Cell(int row, int column) { return Grid.model()->index(row, column); }
    QString Shown(int row, int column) { return Cell(row, column).data().toString(); }
    QStringList Column(int column) { return TGuiTools::Column(*Grid.model(), column); }
    void Click(int column) { TGuiTools::ClickHeader(Grid.horizontalHeader(), column); }
    template <typename T = QLineEdit>
    T *Editor()
    {
        return Grid.findChild<T *>("edCell");
    }
    /// Types over a cell and ends with Enter.
    void TypeInto(int row, int column, const QString &text)
    {
        Grid.setCurrentIndex(Cell(row, column));
        QTest::keyClick(&Grid, Qt::Key_F2);
        ASSERT_NE(Editor(), nullptr);
        Editor()->selectAll();
        QTest::keyClicks(Editor(), text);
        QTest::keyClick(Editor(), Qt::Key_Return);
        TTestLoop::Settle();
    }
    QString Note()
    {
        const auto *note = Grid.findChild<QLabel *>("labNote");
        return note ? note->text() : QString();
    }

    TMyConnection Connection;
    TMyQuery Query{&Connection};
    TDataSetGrid Grid;
};
