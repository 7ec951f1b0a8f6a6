#include "uTestSupervisor.h"

#include <cerrno>
#include <spawn.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <vector>

extern char **environ;

TTestSupervisor::TTestSupervisor(const QStringList &command)
{
    std::vector<QByteArray> words;
    for (const QString &word : command)
        words.push_back(word.toUtf8());
    std::vector<char *> argv;
    for (QByteArray &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    // Close-on-exec: another child of the test that held this end would keep the server alive.
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends))
        throw std::system_error(errno, std::generic_category(), "socketpair");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_adddup2(&actions, ends[1], standard);
    const int error = posix_spawnp(&FPid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    FEnd = ends[0];
    if (error) {
        close(FEnd);
        throw std::system_error(error, std::generic_category(), argv[0]);
    }
}

TTestSupervisor::~TTestSupervisor()
{
    shutdown(FEnd, SHUT_WR);
    waitpid(FPid, nullptr, 0);
    close(FEnd);
}

void TTestSupervisor::Write(const QByteArray &line)
{
    const QByteArray text = line + '\n';
    if (write(FEnd, text.constData(), size_t(text.size())) != text.size())
        throw std::system_error(errno, std::generic_category(), "supervisor of a test server");
}

QByteArray TTestSupervisor::ReadLine()
{
    QByteArray line;
    for (char c = 0; c != '\n' && TEMP_FAILURE_RETRY(read(FEnd, &c, 1)) == 1;)
        line += c;
    return line;
}

QByteArray TTestSupervisor::Await(const QByteArray &word)
{
    QByteArray other;
    for (QByteArray line = ReadLine(); !line.isEmpty(); line = ReadLine()) {
        if (line.startsWith(word))
            return line.trimmed();
        other += line;
    }
    throw std::runtime_error("The test server ended: " + other.toStdString());
}
