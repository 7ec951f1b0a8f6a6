#include "uStartBench.h"

#include "app/uAppPathUtils.h"
#include "model/uDbmManager.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uAppStart.h"
#include "shell/uMainDataModule.h"
#include "shell/uMainForm.h"
#include "shell/uManagerFrame.h"
#include "uBench.h"
#include "uBenchRows.h"

#include <QCoreApplication>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QMainWindow>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <mysql.h>
#include <stdexcept>

namespace {

const QString ChildOption = QStringLiteral("--start-of");

double ResidentMiB()
{
    QFile file("/proc/self/status");
    file.open(QIODevice::ReadOnly);
    const QByteArrayList lines = file.readAll().split('\n');
    for (const QByteArray &line : lines)
        if (line.startsWith("VmRSS:"))
            return line.mid(6).simplified().split(' ').value(0).toDouble() / 1024;
    return 0;
}

/// Says that the window is usable, and a moment later what it holds.
void Report()
{
    std::printf("ready\n");
    std::fflush(stdout);
    QTimer::singleShot(500, [] {
        std::printf("%.1f\n", ResidentMiB());
        std::fflush(stdout);
        QCoreApplication::exit(0);
    });
    QCoreApplication::exec();
}

void StartProduct()
{
    const QTemporaryDir folder;
    TAppPathUtils::SetBaseFolders(folder.filePath("data"), folder.filePath("documents"),
                                  KORVANE_BENCH_SOURCE);
    TAppStart::Prepare();
    const TMainDataModule dataModule;
    TMainForm window;
    window.show();
    auto manager = TBenchRows::ConnectManager();
    window.NewConnection(std::move(manager), "bench", "{id}");
    window.GetActiveManagerFrame()->Utils().NewQuery();
    window.repaint();
    // The profiles dialog opens by itself at the first idle moment and would stay.
    QTimer::singleShot(50, [] {
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (auto *dialog = qobject_cast<QDialog *>(widget))
                dialog->reject();
    });
    Report();
}

void StartBare()
{
    QMainWindow window;
    auto *label = new QLabel(&window);
    window.setCentralWidget(label);
    window.resize(1200, 700);
    window.show();
    st_mysql *session = mysql_init(nullptr);
    if (!mysql_real_connect(session, "127.0.0.1", "root", "", nullptr,
                            unsigned(TBench::ServerPort()), nullptr, 0))
        throw std::runtime_error(mysql_error(session));
    label->setText(mysql_get_server_info(session));
    window.repaint();
    Report();
    mysql_close(session);
}

struct TStarted
{
    double Seconds = 0;
    double Memory = 0; // MiB
};

TStarted Start(const QString &which)
{
    TStarted started;
    QProcess process;
    started.Seconds = TBench::Seconds([&] {
        process.start(QCoreApplication::applicationFilePath(), {ChildOption, which});
        while (!process.canReadLine() && process.waitForReadyRead(60000)) {
        }
    });
    if (process.readLine().trimmed() != "ready")
        throw std::runtime_error("the program did not start");
    process.waitForFinished(60000);
    started.Memory = process.readAll().trimmed().toDouble();
    return started;
}

const TBenchRegistrar Rows([] {
    return std::vector<TBenchRow>{
        {.What = "start to a usable, connected window",
         .PeerName = "a bare Qt window that connects",
         .Unit = "s",
         .Limit = 4,
         .Product = [] { return Start("product").Seconds; },
         .Peer = [] { return Start("bare").Seconds; }},
        {.What = "memory of the connected window when idle",
         .PeerName = "120 MiB",
         .Unit = "MiB",
         .Limit = 1,
         .Product = [] { return Start("product").Memory; },
         .Peer = [] { return 120.0; },
         .Rounds = 1},
    };
});

} // namespace

bool TBenchStart::IsChild(const QStringList &arguments, int &exitCode)
{
    if (arguments.value(1) != ChildOption)
        return false;
    arguments.value(2) == "product" ? StartProduct() : StartBare();
    exitCode = 0;
    return true;
}
