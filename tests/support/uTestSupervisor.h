#pragma once

#include <QByteArray>
#include <QStringList>

#include <sys/types.h>

/// The script that looks after a private server, at the other end of a pair of sockets. It takes
/// the end of its input as the sign to end the server, so the server goes with this process however
/// this process goes. No QProcess, since that belongs to one thread and to the life of the
/// application.
class TTestSupervisor
{
public:
    explicit TTestSupervisor(const QStringList &command);
    /// Ends the server and waits until its data are gone.
    ~TTestSupervisor();
    TTestSupervisor(const TTestSupervisor &) = delete;
    TTestSupervisor &operator=(const TTestSupervisor &) = delete;

    void Write(const QByteArray &line);
    /// The next line that begins with this word. Throws std::runtime_error with all that was said
    /// instead when the script ends first.
    QByteArray Await(const QByteArray &word);

private:
    QByteArray ReadLine();

    pid_t FPid = 0;
    int FEnd = -1;
};
