#include "uTestDatabase.h"
#include "uTestLoop.h"

#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// A test program that dies at the worst moment: its server runs and nobody says goodbye.
qint64 PidOfServerOfCrashedProgram()
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC))
        throw std::runtime_error("pipe");
    const pid_t program = fork();
    if (program == 0) {
        const std::unique_ptr<TTestServer> server = TTestServer::Start();
        const qint64 pid = server->Pid();
        if (write(ends[1], &pid, sizeof pid) == sizeof pid)
            raise(SIGKILL);
        _exit(1);
    }
    close(ends[1]);
    qint64 pid = 0;
    const ssize_t got = read(ends[0], &pid, sizeof pid);
    close(ends[0]);
    waitpid(program, nullptr, 0);
    return got == sizeof pid ? pid : 0;
}

} // namespace

TEST(TTestServerTest, TellsErrorsOfEveryStatement)
{
    const TTestDatabase database;
    EXPECT_THROW(database.Exec("SELECT 1; SELECT nothing_like_this"), std::runtime_error);
    EXPECT_THROW(database.Server().Stop(), std::runtime_error) << "others still need it";
}

TEST(TTestServerTest, SaysWhyItDoesNotStart)
{
    try {
        TTestServer::Start({"--no-such-option"});
        FAIL() << "started";
    } catch (const std::runtime_error &e) {
        EXPECT_NE(std::string(e.what()).find("no-such-option"), std::string::npos) << e.what();
    }
}

TEST(TTestServerTest, DiesWithACrashedProgram)
{
    const qint64 pid = PidOfServerOfCrashedProgram();
    ASSERT_GT(pid, 0);
    EXPECT_TRUE(TTestLoop::RunUntil([pid] { return kill(pid_t(pid), 0) != 0; }));
}
