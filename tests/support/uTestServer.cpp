#include "uTestServer.h"

#include "uTestSupervisor.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <stdexcept>

namespace {

constexpr int StartDeadline = 180000; // milliseconds; a first start also makes the data folder

std::runtime_error Error(const QString &text)
{
    return std::runtime_error(text.toStdString());
}

QString Script()
{
    return QStringLiteral(KORVANE_TEST_SUPPORT "/test-server.sh");
}

QString KindName(TTestServerKind kind)
{
    return kind == skMySQL ? QStringLiteral("mysql") : QStringLiteral("mariadb");
}

QString CacheFolder()
{
    const QString base = qEnvironmentVariable("XDG_CACHE_HOME");
    return (base.isEmpty() ? qEnvironmentVariable("HOME") + "/.cache" : base) + "/korvane-tests";
}

QString MySqlFolder()
{
    return qEnvironmentVariable("KORVANE_MYSQL9_ROOT", CacheFolder() + "/mysql9");
}

bool HasMySql()
{
    return QFileInfo(MySqlFolder() + "/usr/sbin/mysqld").isExecutable();
}

// Without a run of ctest around there is no folder of shared servers.
QString SharedFolder()
{
    const QString folder = qEnvironmentVariable("KORVANE_TEST_SERVERS");
    return QFileInfo::exists(folder + "/owner") ? folder : QString();
}

struct TReady
{
    int Port;
    qint64 Pid;
};

TReady ParseReady(const QByteArray &line)
{
    const QList<QByteArray> words = line.simplified().split(' ');
    if (words.size() != 3 || words[0] != "ready")
        throw Error("A test server answered \"" + QString::fromUtf8(line) + '"');
    return {words[1].toInt(), words[2].toLongLong()};
}

// What the server of the run said when it was ready. The first program that needs it starts it.
QByteArray SharedState(TTestServerKind kind, const QString &folder)
{
    QFile state(folder + '/' + KindName(kind) + "/state");
    if (!state.exists()) {
        QProcess script;
        script.start(QStringLiteral("bash"), {Script(), "share", KindName(kind), folder});
        if (!script.waitForFinished(StartDeadline) || script.exitCode() != 0)
            throw Error("No test server: " + QString::fromUtf8(script.readAllStandardError()));
    }
    if (!state.open(QIODevice::ReadOnly))
        throw Error(state.fileName() + ": " + state.errorString());
    return state.readAll();
}

} // namespace

std::unique_ptr<TTestServer> TTestServer::OfRun(TTestServerKind kind)
{
    const QString folder = SharedFolder();
    std::unique_ptr<TTestServer> server;
    if (folder.isEmpty()) {
        server = Start({}, kind);
    } else {
        const TReady ready = ParseReady(SharedState(kind, folder));
        server.reset(new TTestServer);
        server->FKind = kind;
        server->FPort = ready.Port;
        server->FPid = ready.Pid;
    }
    server->FOfRun = true;
    return server;
}

TTestServer &TTestServer::Instance()
{
    static const std::unique_ptr<TTestServer> server = OfRun(skMariaDB);
    return *server;
}

TTestServer *TTestServer::MySql9()
{
    if (!HasMySql())
        return nullptr;
    static const std::unique_ptr<TTestServer> server = OfRun(skMySQL);
    return server.get();
}

QString TTestServer::MySql9Absence()
{
    if (HasMySql())
        return {};
    QFile reason(MySqlFolder() + ".log");
    const QString why = reason.open(QIODevice::ReadOnly)
                            ? QString::fromUtf8(reason.readAll()).trimmed()
                            : QString();
    return "No MySQL 9 in " + MySqlFolder() + (why.isEmpty() ? QString() : ": " + why);
}

std::unique_ptr<TTestServer> TTestServer::Start(const QStringList &arguments, TTestServerKind kind)
{
    std::unique_ptr<TTestServer> server(new TTestServer);
    server->FKind = kind;
    server->FSupervisor = std::make_unique<TTestSupervisor>(
        QStringList{"bash", Script(), "serve", KindName(kind), "-"} + arguments);
    server->AwaitReady();
    return server;
}

TTestServer::TTestServer() = default;

TTestServer::~TTestServer() = default;

void TTestServer::AwaitReady()
{
    const TReady ready = ParseReady(FSupervisor->Await("ready"));
    FPort = ready.Port;
    FPid = ready.Pid;
}

void TTestServer::Kill()
{
    if (FOfRun)
        throw Error(QStringLiteral("The server of the whole run is not for one test to kill"));
    FSupervisor->Write("kill");
    FSupervisor->Await("killed");
}

void TTestServer::Restart()
{
    FSupervisor->Write("start");
    AwaitReady();
}

void TTestServer::Exec(const QString &sql, const QString &database) const
{
    TTestSession(*this, database).Exec(sql);
}

QString TTestServer::Value(const QString &sql, const QString &database) const
{
    return TTestSession(*this, database).Value(sql);
}

QByteArray TTestServer::Bytes(const QString &sql, const QString &database) const
{
    return TTestSession(*this, database).Bytes(sql);
}

QList<QStringList> TTestServer::Rows(const QString &sql, const QString &database) const
{
    return TTestSession(*this, database).Rows(sql);
}
