#pragma once

#include "core/uServerProfile.h"
#include "pages/query/uQueryPageFrame.h"
#include "pages/tree/uManagerObjectsFrame.h"
#include "pages/uTabTools.h"
#include "shell/uAppMessages.h"
#include "shell/uRecordedDialogs.h"
#include "shell/uWorkbenchFixture.h"
#include "widgets/uDropDownCombo.h"
#include "widgets/uVTDataModel.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>

/// A workspace on a database with an object of each kind, and what its tree shows.
class TObjectsFrameTest : public TWorkbenchTest
{
protected:
    explicit TObjectsFrameTest(TTestServer &server = TTestServer::Instance())
        : TWorkbenchTest(server)
    {
        for (const char *sql :
             {"CREATE TABLE cities (id INT PRIMARY KEY, name VARCHAR(20), KEY by_name (name))",
              "CREATE TABLE streets (id INT PRIMARY KEY, city_id INT, CONSTRAINT in_city FOREIGN "
              "KEY (city_id) REFERENCES cities (id))",
              "CREATE TRIGGER on_city BEFORE INSERT ON cities FOR EACH ROW SET NEW.name = 'x'",
              "CREATE VIEW names AS SELECT name FROM cities", "CREATE PROCEDURE tidy () SELECT 1",
              "CREATE FUNCTION two () RETURNS INT DETERMINISTIC RETURN 2",
              "CREATE EVENT nightly ON SCHEDULE EVERY 1 DAY DO SELECT 1"})
            Exec(sql);
    }

    TManagerObjectsFrame &Open(const QString &bound = {}) { return Open(Profile(bound)); }

    TManagerObjectsFrame &Open(const TDbmConnectionProfile &profile)
    {
        TManagerFrame &workspace = OpenWorkspaceOn(profile);
        FStatements = 0;
        QObject::connect(&workspace, &TManagerFrame::OnCommandBeforeExecute, &workspace,
                         [this] { ++FStatements; });
        auto *frame = workspace.findChild<TManagerObjectsFrame *>();
        FTree = Find<TVTTreeView>(frame, "lvTree");
        FData = FTree->findChild<TVTDataManager *>();
        return *frame;
    }

    TManagerObjectsFrame &OpenDatabase()
    {
        TManagerObjectsFrame &frame = Open();
        frame.SelectDatabase(Database().Name());
        return frame;
    }

    /// The captions below a node, or of the whole tree's first level.
    QStringList Below(const QStringList &path = {})
    {
        const TVTDataList &list = *(path.isEmpty() ? FData->DataList() : Node(path).DataList());
        QStringList captions;
        for (int i = 0; i < list.Count(); ++i)
            captions += list.Items(i)->Caption();
        return captions;
    }

    QAction *Action(const char *name)
    {
        return Find<QAction>(Window->findChild<TManagerObjectsFrame *>(), name);
    }
    void DoubleClick(const QStringList &path)
    {
        const QModelIndex index = FData->Model()->IndexOf(&Node(path));
        FTree->scrollTo(index);
        const QPoint place = FTree->visualRect(index).center();
        QTest::mouseClick(FTree->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(FTree->viewport(), Qt::LeftButton, {}, place);
    }

    /// By captions from the root; a folder's without its count. Throws when there is none.
    TVTDataItem &Node(const QStringList &path)
    {
        TVTDataList *list = FData->DataList();
        TVTDataItem *item = nullptr;
        for (const QString &caption : path) {
            item = nullptr;
            for (int i = 0; i < list->Count(); ++i)
                if (list->Items(i)->Caption().section(" (", 0, 0) == caption)
                    item = list->Items(i);
            if (!item)
                throw std::runtime_error("no node " + caption.toStdString());
            list = item->DataList();
        }
        return *item;
    }

    void Focus(const QStringList &path) { FData->SetFocusedItem(&Node(path)); }

    void Press(int key, const QStringList &path)
    {
        Focus(path);
        QTest::keyClick(FTree, Qt::Key(key));
    }
    /// What is typed into the next dialog for a name.
    void RenameBy(const QString &name)
    {
        Driver.Expect([name](QWidget *dialog) {
            Find<QLineEdit>(dialog, "edName")->setText(name);
            TGuiTools::Click(dialog, "butOK");
        });
    }

    int FStatements = 0;
    TVTTreeView *FTree = nullptr;
    TVTDataManager *FData = nullptr;
};
