#include "uTestSshServer.h"

#include "uTestSocket.h"

#include <QDir>
#include <QFile>
#include <csignal>
#include <pwd.h>
#include <stdexcept>
#include <thread>

namespace {

quint16 FreePort()
{
    const int listener = TTestSocket::Listen();
    const quint16 port = TTestSocket::PortOf(listener);
    ::close(listener);
    return port;
}

void Write(const QString &fileName, const QByteArray &text)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append) || file.write(text) != text.size())
        throw std::runtime_error("cannot write " + fileName.toStdString());
}

} // namespace

TTestSshServer::TTestSshServer() : FPort(FreePort())
{
    // The server's own demand where it runs as root.
    if (::geteuid() == 0)
        QDir().mkpath("/run/sshd");
    QByteArray config = "ListenAddress 127.0.0.1\nStrictModes no\nUsePAM no\nPidFile none\n"
                        "PermitRootLogin yes\nPasswordAuthentication yes\nMaxStartups 100\n";
    config += "Port " + QByteArray::number(FPort) + "\nAuthorizedKeysFile " +
              Path("authorized").toUtf8() + '\n';
    for (const char *type : {"rsa", "ecdsa", "ed25519"}) {
        const QString key = Path(QString("host_") + type);
        Run("ssh-keygen", {"-q", "-t", type, "-N", "", "-f", key});
        config += "HostKey " + key.toUtf8() + '\n';
    }
    Write(Path("config"), config);
    Write(Path("authorized"), {});
    Start();
}

void TTestSshServer::Start()
{
    FProcess.start("setpriv", {"--pdeathsig", "KILL", "/usr/sbin/sshd", "-D", "-f", Path("config"),
                               "-E", Path("log")});
    AwaitPort();
}

void TTestSshServer::AwaitPort()
{
    for (int i = 0; i < 200; ++i) {
        const int client = TTestSocket::New();
        const bool answers = TTestSocket::Connect(client, FPort);
        ::close(client);
        if (answers)
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    QFile log(Path("log"));
    const bool opened = log.open(QIODevice::ReadOnly);
    Kill();
    throw std::runtime_error("sshd does not answer: " +
                             (opened ? log.readAll().toStdString() : std::string()));
}

TTestSshServer::~TTestSshServer()
{
    Kill();
}

// Sessions run in groups of their own; each is a descendant that we started.
void TTestSshServer::Kill()
{
    if (FProcess.state() == QProcess::NotRunning)
        return;
    QList<QByteArray> parents{QByteArray::number(FProcess.processId())};
    const QList<QByteArray> lines = Run("ps", {"-eo", "pid=,ppid="}).split('\n');
    for (qsizetype i = 0; i < parents.size(); ++i)
        for (const QByteArray &line : lines) {
            const QList<QByteArray> pair = line.simplified().split(' ');
            if (pair.size() == 2 && pair[1] == parents[i])
                parents.append(pair[0]);
        }
    for (const QByteArray &pid : parents)
        ::kill(pid.toInt(), SIGKILL);
    FProcess.waitForFinished();
}

QString TTestSshServer::User() const
{
    return QString::fromLocal8Bit(::getpwuid(::geteuid())->pw_name);
}

QByteArray TTestSshServer::Run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        throw std::runtime_error(program.toStdString() + ": " + process.readAll().toStdString());
    return process.readAll();
}

QByteArray TTestSshServer::NewKey(const QStringList &arguments, const QString &passPhrase)
{
    const QString name = Path("key" + QString::number(++FKeys));
    Run("ssh-keygen", QStringList{"-q", "-N", passPhrase, "-f", name} + arguments);
    QFile publicKey(name + ".pub");
    QFile privateKey(name);
    if (!publicKey.open(QIODevice::ReadOnly) || !privateKey.open(QIODevice::ReadOnly))
        throw std::runtime_error("no key was made");
    Write(Path("authorized"), publicKey.readAll());
    return privateKey.readAll();
}

QString TTestSshServer::Fingerprint(const QString &hash) const
{
    return QString::fromUtf8(
        Run("ssh-keygen", {"-l", "-E", hash, "-f", Path("key" + QString::number(FKeys) + ".pub")}));
}
