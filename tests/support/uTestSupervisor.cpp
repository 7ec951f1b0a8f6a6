#include "uTestSupervisor.h"

#include <QStringList>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <vector>

extern char **environ;

namespace {

// Close-on-exec: another child of the test that held the writing end would keep the server alive.
std::array<int, 2> MakePipe()
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC))
        throw std::system_error(errno, std::generic_category(), "pipe");
    return ends;
}

} // namespace

TTestSupervisor::TTestSupervisor(const QStringList &command)
{
    std::vector<QByteArray> words;
    for (const QString &word : command)
        words.push_back(word.toUtf8());
    std::vector<char *> argv;
    for (QByteArray &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    const auto [childInput, input] = MakePipe();
    const auto [output, childOutput] = MakePipe();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, childInput, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, childOutput, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, childOutput, STDERR_FILENO);
    const int error = posix_spawnp(&FPid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(childInput);
    close(childOutput);
    FInput = input;
    FOutput = output;
    if (error) {
        close(FInput);
        close(FOutput);
        throw std::system_error(error, std::generic_category(), argv[0]);
    }
}

TTestSupervisor::~TTestSupervisor()
{
    close(FInput);
    waitpid(FPid, nullptr, 0);
    close(FOutput);
}

void TTestSupervisor::Write(const QByteArray &line)
{
    const QByteArray text = line + '\n';
    if (write(FInput, text.constData(), size_t(text.size())) != text.size())
        throw std::system_error(errno, std::generic_category(), "supervisor of a test server");
}

QByteArray TTestSupervisor::ReadLine()
{
    QByteArray line;
    char c = 0;
    ssize_t got = 0;
    while ((got = read(FOutput, &c, 1)) == 1 || (got < 0 && errno == EINTR)) {
        if (got == 1)
            line += c;
        if (got == 1 && c == '\n')
            break;
    }
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
