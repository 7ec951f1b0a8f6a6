#include "core/uDbmSqlProcessor.h"
#include "uBench.h"

#include <QProcess>
#include <QTemporaryFile>
#include <stdexcept>

namespace {

constexpr qint64 MiB = 1024 * 1024;
constexpr qint64 ScriptSize = 1024 * MiB;

/// About a megabyte of what dumps are made of: statements of one line and of several, comments, and
/// text that is not ASCII in every tenth row.
QByteArray Piece()
{
    QByteArray piece = "-- a table\r\nCREATE TABLE `orders` (\r\n  `id` INT NOT NULL,\r\n"
                       "  `customer` VARCHAR(100),\r\n  `total` DECIMAL(10,2)\r\n);\r\n\r\n";
    for (int i = 0; piece.size() < MiB; ++i) {
        const char *name = i % 10 == 0 ? "Клиент" : "customer";
        piece += QStringLiteral("INSERT INTO `orders` VALUES (%1, '%2 %3', %4.50, 'in %5 parts'")
                     .arg(QString::number(i), QString::fromUtf8(name), QString::number(i % 997),
                          QString::number(i * 3), QString::number(i % 7))
                     .toUtf8();
        piece += i % 4 == 0 ? ",\r\n  NULL, DEFAULT);\r\n" : ");\r\n";
    }
    return piece;
}

QString ScriptFile()
{
    static QTemporaryFile file;
    if (file.isOpen())
        return file.fileName();
    if (!file.open() || file.write("\xEF\xBB\xBF") < 0)
        throw std::runtime_error("the script cannot be written");
    const QByteArray piece = Piece();
    while (file.size() < ScriptSize) {
        if (file.write(piece) != piece.size())
            throw std::runtime_error("the script cannot be written");
    }
    file.flush();
    return file.fileName();
}

void Split()
{
    qint64 statements = 0;
    TDbmSqlProcessor processor;
    processor.SetOnProcess([&](TDbmSqlProcessor *, const QString &) { ++statements; });
    processor.ExecuteFromFile(ScriptFile());
    if (statements == 0)
        throw std::runtime_error("no statements");
}

double Rate(const std::function<void()> &action)
{
    return static_cast<double>(ScriptSize / MiB) / TBench::Seconds(action);
}

void Iconv()
{
    QProcess iconv;
    iconv.setStandardOutputFile(QProcess::nullDevice());
    iconv.start("iconv", {"-f", "utf8", "-t", "utf16le", ScriptFile()});
    if (!iconv.waitForFinished(-1) || iconv.exitCode() != 0)
        throw std::runtime_error("iconv failed");
}

double SplitGrowth()
{
    return TBench::PeakGrowth([](const std::function<void()> &mark) {
               mark();
               Split();
           }) /
           static_cast<double>(MiB);
}

const TBenchRegistrar Rows([] {
    return std::vector<TBenchRow>{
        {.What = "splitting a script file of 1 GiB",
         .PeerName = "iconv -f utf8 -t utf16le",
         .Unit = "MiB/s",
         .Goal = bgAtLeast,
         .Limit = 0.8,
         .Product = [] { return Rate(Split); },
         .Peer = [] { return Rate(Iconv); },
         .Prepare = ScriptFile,
         .Rounds = 3},
        // A block is 128 KiB and the longest line far less; the rest is the allocator's.
        {.What = "splitting a script file of 1 GiB, memory",
         .PeerName = "fixed",
         .Unit = "MiB",
         .Limit = 1,
         .Product = SplitGrowth,
         .Peer = [] { return 2.0; },
         .Prepare = ScriptFile,
         .Rounds = 1},
    };
});

} // namespace
