#include "uBench.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTextStream>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::vector<TBench::TMake> &Makers()
{
    static std::vector<TBench::TMake> makers;
    return makers;
}

const QString RowOption = QStringLiteral("--row");

std::vector<TBenchRow> AllRows()
{
    std::vector<TBenchRow> rows;
    for (const TBench::TMake &make : Makers())
        for (TBenchRow &row : make())
            rows.push_back(std::move(row));
    return rows;
}

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct TResult
{
    double Product;
    double Peer;
    double Ratio; // median of the ratios of neighbouring runs
};

TResult Measure(const TBenchRow &row)
{
    if (row.Prepare)
        row.Prepare();
    row.Product(); // the first run of each warms caches and is not counted
    row.Peer();
    std::vector<double> product, peer, ratio;
    for (int i = 0; i < row.Rounds; ++i) {
        product.push_back(row.Product());
        peer.push_back(row.Peer());
        ratio.push_back(product.back() / peer.back());
    }
    return {Median(product), Median(peer), Median(ratio)};
}

bool Reached(const TBenchRow &row, const TResult &result)
{
    return row.Goal == bgAtMost ? result.Ratio <= row.Limit : result.Ratio >= row.Limit;
}

QString Text(double value)
{
    return QString::number(value, 'f', value < 10 ? 3 : 1);
}

qint64 StatusBytes(const char *key)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no /proc/self/status");
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.simplified().split(' ').at(1).toLongLong() * 1024;
    }
    throw std::runtime_error(key);
}

void ResetPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (!file.open(QIODevice::WriteOnly) || file.write("5") != 1)
        throw std::runtime_error("the peak of memory cannot be reset");
}

QString Line(const TBenchRow &row, const TResult &result)
{
    QString line;
    QTextStream out(&line);
    out << "| " << row.What << " | " << Text(result.Product) << ' ' << row.Unit << " | "
        << Text(result.Peer) << ' ' << row.Unit << ", " << row.PeerName << " | "
        << QString::number(result.Ratio, 'f', 3) << " | " << (row.Goal == bgAtMost ? "≤ " : "≥ ")
        << row.Limit << " | " << (Reached(row, result) ? "yes" : "**no**") << " |\n";
    return line;
}

} // namespace

void TBench::Add(TMake make)
{
    Makers().push_back(std::move(make));
}

bool TBench::Run(const QString &filter)
{
    const std::vector<TBenchRow> rows = AllRows();
    bool reached = true;
    QString lines;
    for (size_t i = 0; i < rows.size(); ++i) {
        if (!rows[i].What.contains(filter, Qt::CaseInsensitive))
            continue;
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(), {RowOption, QString::number(i)});
        if (!child.waitForFinished(-1) || child.exitCode() > 1)
            throw std::runtime_error("failed: " + rows[i].What.toStdString());
        lines += QString::fromUtf8(child.readAllStandardOutput());
        reached = child.exitCode() == 0 && reached;
    }
    QTextStream(stdout) << "| What | Product | Peer | Ratio | Must reach | |\n"
                           "|---|---|---|---|---|---|\n"
                        << lines;
    return reached;
}

bool TBench::IsChild(const QStringList &arguments, int &exitCode)
{
    if (arguments.value(1) != RowOption)
        return false;
    const TBenchRow row = AllRows().at(arguments.value(2).toULong());
    const TResult result = Measure(row);
    QTextStream(stdout) << Line(row, result);
    exitCode = Reached(row, result) ? 0 : 1;
    return true;
}

double TBench::Seconds(const std::function<void()> &action)
{
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double TBench::PeakGrowth(const std::function<void(const std::function<void()> &mark)> &action)
{
    int ends[2];
    if (::pipe(ends) != 0)
        throw std::runtime_error("pipe");
    const pid_t child = ::fork();
    if (child == 0) {
        qint64 start = 0;
        action([&start] {
            ResetPeak();
            start = StatusBytes("VmRSS:");
        });
        const double growth = static_cast<double>(StatusBytes("VmHWM:") - start);
        const bool written = ::write(ends[1], &growth, sizeof(growth)) == sizeof(growth);
        ::_exit(written ? 0 : 1);
    }
    ::close(ends[1]);
    double growth = 0;
    const bool read = ::read(ends[0], &growth, sizeof(growth)) == sizeof(growth);
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    if (!read)
        throw std::runtime_error("the measured process failed");
    return growth;
}

int TBench::ServerPort()
{
    const int port = qEnvironmentVariableIntValue("KORVANE_BENCH_PORT");
    if (port == 0)
        throw std::runtime_error("KORVANE_BENCH_PORT is not set; use bench/run");
    return port;
}
