#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

/// How a measured value has to stand to its peer's or to a number.
enum TBenchGoal { bgAtMost, bgAtLeast };

/// One measurement and its peer. Both are run in turns within one process, since the machine
/// changes its speed between runs: only their ratio means something. Each row has a process of its
/// own, since the memory that one leaves behind slows the next.
struct TBenchRow
{
    using TRun = std::function<double()>;

    QString What;
    QString PeerName;
    QString Unit; // of the values that the runs give, such as "s" or "MiB"
    TBenchGoal Goal = bgAtMost;
    double Limit = 1; // of product divided by peer
    TRun Product;
    TRun Peer;
    std::function<void()> Prepare; // once, ahead of all runs
    int Rounds = 7;
};

/// The table of all measurements. Each file adds its rows by a static object:
/// `const TBenchRegistrar Rows([] { return std::vector<TBenchRow>{...}; });`
class TBench
{
public:
    using TMake = std::function<std::vector<TBenchRow>()>;

    static void Add(TMake make);
    /// Runs the rows whose name contains the filter and prints a table in Markdown. Gives false
    /// when a goal was missed.
    static bool Run(const QString &filter);
    /// Whether this process is one that Run() has started; then it has measured its row, and the
    /// exit code is 1 when its goal was missed.
    static bool IsChild(const QStringList &arguments, int &exitCode);

    /// Seconds that the action takes.
    static double Seconds(const std::function<void()> &action);
    /// Runs the action in a process of its own and gives by how many bytes it grew at its peak over
    /// what it had when `mark` was called.
    static double PeakGrowth(const std::function<void(const std::function<void()> &mark)> &action);
    /// Port of the private server on 127.0.0.1 (root, no password) that bench/run has started.
    static int ServerPort();
};

struct TBenchRegistrar
{
    explicit TBenchRegistrar(TBench::TMake make) { TBench::Add(std::move(make)); }
};
