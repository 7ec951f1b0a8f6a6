#include "uTestDatabase.h"
#include "uTestLoop.h"

#include <csignal>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

TEST(TTestServerTest, TellsErrorsOfEveryStatement)
{
    const TTestDatabase database;
    EXPECT_THROW(database.Exec("SELECT 1; SELECT nothing_like_this"), std::runtime_error);
    EXPECT_THROW(database.Server().Kill(), std::runtime_error) << "others still need it";
}

// A test program that dies at the worst moment: its server runs and nobody says goodbye.
TEST(TTestServerTest, DiesWithACrashedProgram)
{
    void *shared =
        mmap(nullptr, sizeof(qint64), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(shared, MAP_FAILED);
    auto *pid = static_cast<qint64 *>(shared);
    const pid_t program = fork();
    if (program == 0) {
        const std::unique_ptr<TTestServer> server = TTestServer::Start();
        *pid = server->Pid();
        raise(SIGKILL);
    }
    waitpid(program, nullptr, 0);
    ASSERT_GT(*pid, 0);
    EXPECT_TRUE(TTestLoop::RunUntil([pid] { return kill(pid_t(*pid), 0) != 0; }));
}
