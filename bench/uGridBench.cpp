#include "client/uMyQuery.h"
#include "pages/data/uDataFrame.h"
#include "uBench.h"
#include "uBenchRows.h"
#include "widgets/uDataSetGrid.h"
#include "widgets/uDataSetModel.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QPixmap>
#include <QScrollBar>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlQueryModel>
#include <QTableView>
#include <algorithm>
#include <memory>
#include <mysql.h>
#include <random>
#include <stdexcept>

namespace {

constexpr double MiB = 1024 * 1024;
constexpr int Jumps = 200;

// Paints all that the widget shows, whether the platform has a screen for it or not.
void Paint(QWidget &widget)
{
    QCoreApplication::sendPostedEvents();
    widget.grab();
}

/// The result grid of a query page without the page around it.
struct TGrid
{
    TGrid()
    {
        Connection.Server = "127.0.0.1";
        Connection.Port = TBench::ServerPort();
        Connection.Username = "root";
        Connection.Database = TBenchRows::Database();
        Connection.Options.Charset = "utf8mb4";
        Connection.Options.UseUnicode = true;
        Connection.Connect();
        Frame.reset(TBaseFrame::New<TDataFrame>(nullptr));
        Frame->resize(1200, 700);
        Frame->show();
        Paint(*Frame);
    }
    ~TGrid() { Frame->PrepareDestroy(); }
    void Fill()
    {
        Query = std::make_unique<TMyQuery>(&Connection);
        Query->SetSQL(TBenchRows::Select());
        Query->Execute();
        Frame->SetParams(Query.get());
        Frame->Process();
        Paint(*Frame->Grid());
        if (Frame->Grid()->model()->rowCount() != TBenchRows::Count)
            throw std::runtime_error("the grid has not all rows");
    }

    TMyConnection Connection;
    std::unique_ptr<TMyQuery> Query;
    std::unique_ptr<TDataFrame> Frame;
};

/// What Qt has ready for the same.
struct TQtGrid
{
    TQtGrid() : Database(QSqlDatabase::addDatabase("QMYSQL", "bench"))
    {
        Database.setHostName("127.0.0.1");
        Database.setPort(TBench::ServerPort());
        Database.setUserName("root");
        Database.setDatabaseName(TBenchRows::Database());
        if (!Database.open())
            throw std::runtime_error(Database.lastError().text().toStdString());
        View.resize(1200, 700);
        View.show();
        Paint(View);
    }
    ~TQtGrid()
    {
        View.setModel(nullptr);
        Model.clear();
        Database.close();
        Database = {};
        QSqlDatabase::removeDatabase("bench");
    }
    void Fill()
    {
        QSqlQuery query(Database);
        query.exec(TBenchRows::Select());
        Model.setQuery(std::move(query));
        while (Model.canFetchMore())
            Model.fetchMore();
        View.setModel(&Model);
        Paint(View);
        if (Model.rowCount() != TBenchRows::Count)
            throw std::runtime_error("Qt's model has not all rows");
    }

    QSqlDatabase Database;
    QSqlQueryModel Model;
    QTableView View;
};

double FillSeconds()
{
    TGrid grid;
    return TBench::Seconds([&] { grid.Fill(); });
}

double QtFillSeconds()
{
    TQtGrid grid;
    return TBench::Seconds([&] { grid.Fill(); });
}

double BareSeconds()
{
    st_mysql *session = TBenchRows::Connect("bench");
    const double seconds = TBench::Seconds([&] { TBenchRows::BareLoop(session); });
    mysql_close(session);
    return seconds;
}

template <typename T>
double FillGrowth()
{
    return TBench::PeakGrowth([](const std::function<void()> &mark) {
               T grid;
               mark();
               grid.Fill();
           }) /
           MiB;
}

double JumpSeconds(QTableView &view)
{
    std::mt19937 random(1); // the same rows for both
    const int rows = view.model()->rowCount();
    return TBench::Seconds([&] {
        for (int i = 0; i < Jumps; ++i) {
            view.setCurrentIndex(view.model()->index(int(random() % unsigned(rows)), 0));
            Paint(view);
        }
    });
}

// Both grids stay filled for all rounds.
double Jump()
{
    // Kept to the end of the process: windows cannot go behind the application object.
    static TGrid *const grid = [] {
        auto *made = new TGrid;
        made->Fill();
        return made;
    }();
    return JumpSeconds(*grid->Frame->Grid());
}

double QtJump()
{
    static TQtGrid *const grid = [] {
        auto *made = new TQtGrid;
        made->Fill();
        return made;
    }();
    return JumpSeconds(grid->View);
}

int TextColumn(const TDataSet &dataset)
{
    for (const auto &field : dataset.Fields())
        if (field->DataType() == ftString)
            return field->Index();
    throw std::runtime_error("there is no text column");
}

double SortSeconds()
{
    TGrid grid;
    grid.Fill();
    const int column = TextColumn(*grid.Query);
    return TBench::Seconds([&] { grid.Frame->Grid()->model()->sort(column); });
}

double StdSortSeconds()
{
    TGrid grid;
    grid.Fill();
    const TField &field = grid.Query->FieldAt(TextColumn(*grid.Query));
    std::vector<std::string> texts;
    for (qint64 row = 0; row < grid.Query->RecordCount(); ++row)
        texts.emplace_back(field.RawAt(row).data(), size_t(field.RawAt(row).size()));
    return TBench::Seconds([&] { std::sort(texts.begin(), texts.end()); });
}

const TBenchRegistrar Rows([] {
    const auto prepare = TBenchRows::Prepare;
    return std::vector<TBenchRow>{
        {.What = "1,000,000 rows × 10 columns to the painted result grid, time",
         .PeerName = "bare libmariadb loop into one buffer",
         .Unit = "s",
         .Limit = 1.25,
         .Product = FillSeconds,
         .Peer = BareSeconds,
         .Prepare = prepare,
         .Rounds = 5},
        {.What = "the same, time",
         .PeerName = "QSqlQueryModel and QTableView, all rows read",
         .Unit = "s",
         .Limit = 1,
         .Product = FillSeconds,
         .Peer = QtFillSeconds,
         .Prepare = prepare,
         .Rounds = 7},
        {.What = "the same, memory",
         .PeerName = "QSqlQueryModel and QTableView, all rows read",
         .Unit = "MiB",
         .Limit = 1,
         .Product = FillGrowth<TGrid>,
         .Peer = FillGrowth<TQtGrid>,
         .Prepare = prepare,
         .Rounds = 1},
        {.What = "200 jumps to random rows of that grid until repainted",
         .PeerName = "the same on Qt's model",
         .Unit = "s",
         .Limit = 0.2,
         .Product = Jump,
         .Peer = QtJump,
         .Prepare = prepare},
        {.What = "sorting that grid by a text column",
         .PeerName = "std::sort of the same strings",
         .Unit = "s",
         .Limit = 1.5,
         .Product = SortSeconds,
         .Peer = StdSortSeconds,
         .Prepare = prepare,
         .Rounds = 3},
    };
});

} // namespace
