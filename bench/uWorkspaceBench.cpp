#include "app/uAppPathUtils.h"
#include "app/uAppSession.h"
#include "model/uDbmManager.h"
#include "pages/data/uTableDataFrame.h"
#include "pages/tree/uManagerObjectsFrame.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uAppStart.h"
#include "shell/uMainDataModule.h"
#include "shell/uMainForm.h"
#include "shell/uManagerFrame.h"
#include "uBench.h"
#include "uBenchRows.h"
#include "widgets/uGridSearchBar.h"
#include "widgets/uGridView.h"
#include "widgets/uVTDataManager.h"
#include "widgets/uVTDataTreeView.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPixmap>
#include <QTemporaryDir>
#include <QTimer>
#include <mysql.h>
#include <stdexcept>

namespace {

constexpr double BeyondStatements = 50; // milliseconds that a user does not notice
constexpr int Expanded = 100;           // tables
constexpr int ListRows = 50000;
const QString Tables = QStringLiteral("bench_model");
const QString Browsed = QStringLiteral("browsed"); // a million rows with a primary key

// Paints all that the widget shows, whether the platform has a screen for it or not.
void Paint(QWidget &widget)
{
    QCoreApplication::sendPostedEvents();
    widget.grab();
}

void Execute(st_mysql *session, const QString &sql)
{
    const QByteArray text = sql.toUtf8();
    if (mysql_real_query(session, text.constData(), static_cast<unsigned long>(text.size())))
        qFatal("%s\n%s", mysql_error(session), text.constData());
    if (MYSQL_RES *rows = mysql_use_result(session)) {
        while (mysql_fetch_row(rows)) {
        }
        mysql_free_result(rows);
    }
}

/// Seconds that the same statements take when nothing is done with their rows.
double Replay(const QStringList &statements)
{
    if (statements.isEmpty())
        throw std::runtime_error("no statement was sent");
    st_mysql *const session = TBenchRows::Connect("bench");
    const double seconds = TBench::Seconds([&] {
        for (const QString &sql : statements)
            Execute(session, sql);
    });
    mysql_close(session);
    return seconds;
}

/// The program's window, with one workspace that stays; kept to the end of the process.
TMainForm &Window()
{
    static TMainForm *const window = [] {
        static const QTemporaryDir folder;
        TAppPathUtils::SetBaseFolders(folder.filePath("data"), folder.filePath("documents"),
                                      KORVANE_BENCH_SOURCE);
        TAppStart::Prepare();
        const TMainDataModule dataModule;
        auto *made = new TMainForm;
        made->resize(1200, 700);
        made->show();
        // The profiles dialog opens by itself at the first idle moment and would stay.
        QTimer::singleShot(100, [] {
            for (QWidget *widget : QApplication::topLevelWidgets())
                if (auto *dialog = qobject_cast<QDialog *>(widget))
                    dialog->reject();
            QCoreApplication::exit(0);
        });
        QCoreApplication::exec();
        made->NewConnection(TBenchRows::ConnectManager(), "bench", {});
        return made;
    }();
    return *window;
}

/// A workspace beside the one that stays; closed with the object.
struct TWorkspace
{
    explicit TWorkspace(const QString &sessionId = {})
    {
        Window().NewConnection(TBenchRows::ConnectManager(), "bench", sessionId);
        Frame = Window().GetActiveManagerFrame();
        Tree = Frame->findChild<TManagerObjectsFrame *>();
        Nodes = Tree->findChild<TVTTreeView *>("lvTree")->findChild<TVTDataManager *>();
        QObject::connect(Frame, &TManagerFrame::OnCommandBeforeExecute, Frame,
                         [this](const QString &sql) { Statements += sql; });
    }
    ~TWorkspace() { Window().CloseActiveConnection(); }

    void SelectDatabase()
    {
        Tree->SelectDatabase(Tables);
        Paint(*Tree);
        if (Table(0).Caption().isEmpty())
            throw std::runtime_error("the tree shows no table");
    }
    TVTDataItem &Table(int number)
    {
        return *Nodes->DataList()->Items(0)->DataList()->Items(number);
    }

    TManagerFrame *Frame;
    TManagerObjectsFrame *Tree;
    TVTDataManager *Nodes;
    QStringList Statements;
};

QStringList Sent; // by the run of the product before the peer's

double SelectDatabase()
{
    TWorkspace workspace;
    workspace.Statements.clear();
    const double seconds = TBench::Seconds([&] { workspace.SelectDatabase(); });
    Sent = workspace.Statements;
    return seconds;
}

/// Milliseconds of an action beyond the bare statements that it sends.
double Beyond(TWorkspace &workspace, const std::function<void()> &action)
{
    workspace.Statements.clear();
    const double seconds = TBench::Seconds([&] {
        action();
        Paint(*workspace.Tree);
    });
    const double statements = Replay(workspace.Statements);
    return qMax(0.0, seconds - statements) * 1000;
}

double ExpandTable()
{
    TWorkspace workspace;
    workspace.SelectDatabase();
    return Beyond(workspace, [&] { workspace.Table(2500).SetExpanded(true); });
}

double RefreshTree()
{
    TWorkspace workspace;
    workspace.SelectDatabase();
    for (int i = 0; i < Expanded; ++i)
        workspace.Table(i).SetExpanded(true);
    Paint(*workspace.Tree);
    auto *refresh = workspace.Tree->findChild<QAction *>("actRefresh");
    const double beyond = Beyond(workspace, [&] { refresh->trigger(); });
    if (!workspace.Table(Expanded - 1).IsExpanded())
        throw std::runtime_error("the expansion was lost");
    return beyond;
}

struct TListItem
{
    QString Name;
    int Rows;
};

/// A list as the pages have them: focused somewhere in the middle, painted.
struct TList
{
    TList()
        : Model({{.Caption = "Name", .Text = [](const TListItem &item) { return item.Name; }},
                 {.Caption = "Rows",
                  .Text = [](const TListItem &item) { return QString::number(item.Rows); },
                  .SortValue = [](const TListItem &item) { return TGridValue(item.Rows); }}})
    {
        std::vector<TListItem> items;
        for (int i = 0; i < ListRows; ++i)
            items.push_back({"table_" + QString::number((i * 7919) % ListRows), i});
        Model.SetValues(std::move(items));
        View.setModel(&Model);
        View.resize(800, 600);
        View.show();
        View.SetFocusedRow(ListRows / 2);
        Paint(View);
    }

    TGridModel<TListItem> Model;
    TGridView View;
};

double SortList()
{
    TList list;
    return TBench::Seconds([&] {
               list.View.sortByColumn(0, Qt::DescendingOrder);
               Paint(list.View);
           }) *
           1000;
}

double SearchList()
{
    TList list;
    list.View.SearchBar()->Open();
    auto *edit = list.View.SearchBar()->findChild<QLineEdit *>();
    bool finished = false;
    QObject::connect(list.View.SearchBar(), &TGridSearchBar::OnFinished, &list.View,
                     [&] { finished = true; });
    // Nothing has it: every row is looked at.
    return TBench::Seconds([&] {
               edit->setText("no such name");
               edit->textEdited(edit->text());
               while (!finished)
                   QCoreApplication::processEvents();
               Paint(list.View);
           }) *
           1000;
}

void PrepareTree()
{
    TBenchRows::Prepare();
    TBenchRows::PrepareTables();
    Window();
}

void PrepareRows()
{
    TBenchRows::Prepare();
    st_mysql *const session = TBenchRows::Connect("bench");
    Execute(session, "CREATE TABLE IF NOT EXISTS " + Browsed +
                         " (PRIMARY KEY (id)) ENGINE = InnoDB AS SELECT * FROM mixed");
    Execute(session, "ANALYZE TABLE " + Browsed);
    mysql_close(session);
    Window();
}

double ShowPage(const TTableDataSessionData &data)
{
    const auto manager = TBenchRows::ConnectManager();
    manager->Databases().Count();
    QStringList statements;
    manager->SetOnCommandBeforeExecute(
        [&](TDbmManager *, const QString &sql) { statements += sql; });
    std::unique_ptr<TTableDataFrame> frame(TBaseFrame::New<TTableDataFrame>(nullptr));
    frame->resize(1200, 700);
    frame->Initialize(manager.get());
    frame->SetParams("bench", Browsed);
    frame->SetSessionData(data);
    frame->show();
    Paint(*frame);
    statements.clear();
    const double seconds = TBench::Seconds([&] {
        frame->Process();
        Paint(*frame);
    });
    Sent = statements;
    frame->PrepareDestroy();
    return seconds;
}

constexpr int Pages = 40;

/// The active page is a query, as in most sessions that are closed in the middle of work.
void OpenPages(TWorkspace &workspace, int pages)
{
    TAppManagerPageUtils &utils = workspace.Frame->PageUtils();
    for (int i = 1; i < pages; ++i) {
        if (i % 2)
            utils.ShowTable(Tables, "table_" + QString::number(i).rightJustified(4, u'0'), false);
        else
            utils.ShowQueryFromText("SELECT " + QString::number(i), Tables, 0, false);
    }
    utils.ShowQueryFromText("SELECT 1", Tables, 0, true);
}

void PrepareSessions()
{
    PrepareTree();
    for (const int pages : {Pages, 1}) {
        TWorkspace workspace("session of " + QString::number(pages));
        OpenPages(workspace, pages);
    }
}

double OpenSession(int pages)
{
    std::unique_ptr<TWorkspace> workspace;
    const double seconds = TBench::Seconds([&] {
        workspace = std::make_unique<TWorkspace>("session of " + QString::number(pages));
        Paint(Window());
    });
    if (workspace->Frame->GetPagesCaption().size() != pages)
        throw std::runtime_error("the session did not come back");
    return seconds;
}

TBenchRow BeyondRow(const QString &what, double (*run)())
{
    return {.What = what,
            .PeerName = "50 ms beyond the statements",
            .Unit = "ms",
            .Limit = 1,
            .Product = run,
            .Peer = [] { return BeyondStatements; },
            .Prepare = PrepareTree,
            .Rounds = 7};
}

const TBenchRegistrar Rows([] {
    std::vector<TBenchRow> rows = {
        {.What = "selecting a database of 5,000 tables in the tree until painted",
         .PeerName = "the statements of its lists, bare",
         .Unit = "s",
         .Limit = 1.3,
         .Product = SelectDatabase,
         .Peer = [] { return Replay(Sent); },
         .Prepare = PrepareTree,
         .Rounds = 7},
        BeyondRow("expanding one table there", ExpandTable),
        BeyondRow("refreshing the tree with 100 tables expanded", RefreshTree),
        BeyondRow("sorting a list of 50,000 rows by its names", SortList),
        BeyondRow("searching a list of 50,000 rows for what none has", SearchList),
    };
    struct TPage
    {
        QString Name;
        TTableDataSessionData Data;
    };
    for (const int count : {100, 10000})
        for (const TPage &page :
             {TPage{"first", {}},
              TPage{"last", {.CurrentPage = int(TBenchRows::Count / count) - 1}},
              TPage{"sorted", {.SortFieldName = "name", .SoftAscending = false}},
              TPage{"filtered", {.UseFilter = true, .WhereCommandText = "small = 7"}}})
            rows.push_back({.What = "data page of " + QString::number(count) + " rows, " +
                                    page.Name + ", until painted",
                            .PeerName = "the same statements, bare",
                            .Unit = "s",
                            .Limit = 1.25,
                            .Product =
                                [=] {
                                    TTableDataSessionData data = page.Data;
                                    data.RowCount = count;
                                    return ShowPage(data);
                                },
                            .Peer = [] { return Replay(Sent); },
                            .Prepare = PrepareRows,
                            .Rounds = 7});
    rows.push_back({.What = "opening a restored session with 40 pages",
                    .PeerName = "opening one with the active page alone",
                    .Unit = "s",
                    .Limit = 1.5,
                    .Product = [] { return OpenSession(Pages); },
                    .Peer = [] { return OpenSession(1); },
                    .Prepare = PrepareSessions,
                    .Rounds = 7});
    return rows;
});

} // namespace
