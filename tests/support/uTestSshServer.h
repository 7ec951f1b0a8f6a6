#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/// A real OpenSSH server on loopback with the settings of today's default, that lets the user of
/// this process in with the keys made here. Ends with the object, and with this process.
class TTestSshServer
{
public:
    /// Throws std::runtime_error with the end of its log when it does not come up.
    TTestSshServer();
    ~TTestSshServer();
    TTestSshServer(const TTestSshServer &) = delete;
    TTestSshServer &operator=(const TTestSshServer &) = delete;

    quint16 Port() const { return FPort; }
    QString User() const;
    /// The text of a fresh private key that the server knows; the arguments are ssh-keygen's, such
    /// as {"-t", "rsa", "-b", "2048", "-m", "PEM"}.
    QByteArray NewKey(const QStringList &arguments, const QString &passPhrase = QString());
    /// What ssh-keygen says of the newest key.
    QString Fingerprint(const QString &hash) const;
    /// Without warning, and with what serves the open sessions.
    void Kill();
    /// On the same port, with the same keys; behind Kill.
    void Start();

    /// Runs a program to its end. Throws std::runtime_error when it fails.
    static QByteArray Run(const QString &program, const QStringList &arguments);

private:
    QString Path(const QString &name) const { return FFolder.filePath(name); }
    void AwaitPort();

    QTemporaryDir FFolder;
    quint16 FPort = 0;
    QProcess FProcess;
    int FKeys = 0;
};
