#include "client/uMyQuery.h"
#include "uBench.h"
#include "uBenchRows.h"

#include <memory>
#include <mysql.h>

namespace {

void Aim(TMyConnection &connection)
{
    connection.Server = "127.0.0.1";
    connection.Port = TBench::ServerPort();
    connection.Username = "root";
    connection.Database = TBenchRows::Database();
    connection.Options.Charset = "utf8mb4";
    connection.Options.UseUnicode = true;
    connection.Connect();
}

double Load()
{
    TMyConnection connection;
    Aim(connection);
    TMyQuery query(&connection);
    query.SetSQL(TBenchRows::Select());
    return TBench::Seconds([&] { query.Execute(); });
}

double LoadBare()
{
    st_mysql *session = TBenchRows::Connect("bench");
    const double seconds = TBench::Seconds([&] { TBenchRows::BareLoop(session); });
    mysql_close(session);
    return seconds;
}

constexpr double MiB = 1024 * 1024;

double LoadGrowth()
{
    return TBench::PeakGrowth([](const std::function<void()> &mark) {
               TMyConnection connection;
               Aim(connection);
               TMyQuery query(&connection);
               query.SetSQL(TBenchRows::Select());
               mark();
               query.Execute();
           }) /
           MiB;
}

// The cells' bytes and four more for each.
double CellBytes()
{
    st_mysql *session = TBenchRows::Connect("bench");
    const qint64 bytes = TBenchRows::BareLoop(session);
    mysql_close(session);
    return static_cast<double>(bytes + 4 * TBenchRows::Count * TBenchRows::Columns) / MiB;
}

const TBenchRegistrar Rows([] {
    return std::vector<TBenchRow>{
        {.What = "1,000,000 rows × 10 columns into TDataSet, time",
         .PeerName = "bare libmariadb loop into one buffer",
         .Unit = "s",
         .Limit = 1.15,
         .Product = Load,
         .Peer = LoadBare,
         .Prepare = TBenchRows::Prepare},
        {.What = "1,000,000 rows × 10 columns into TDataSet, memory",
         .PeerName = "bytes of the cells and 4 per cell",
         .Unit = "MiB",
         .Limit = 1.3,
         .Product = LoadGrowth,
         .Peer = CellBytes,
         .Prepare = TBenchRows::Prepare,
         .Rounds = 1},
    };
});

} // namespace
