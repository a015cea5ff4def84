#include <fcntl.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <optional>

#include <gtest/gtest.h>

#include "tests/support/SystemCallSteps.h"

namespace Corvel::Testing {
namespace {

/// A process that waits for a byte, tells its parent's number twice, and ends.
class Process {
public:
    Process() {
        EXPECT_EQ(pipe2(_go.data(), O_CLOEXEC), 0);
        _id = fork();
        if (_id == 0) {
            char c = 0;
            static_cast<void>(read(_go[0], &c, 1));
            syscall(SYS_getppid);
            syscall(SYS_getppid);
            _exit(7);
        }
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process() {
        close(_go[0]);
        close(_go[1]);
    }

    pid_t Id() const { return _id; }
    void Go() const { EXPECT_EQ(write(_go[1], "g", 1), 1); }
    int Wait() const {
        int status = 0;
        EXPECT_EQ(waitpid(_id, &status, 0), _id);
        return status;
    }

private:
    std::array<int, 2> _go = {};
    pid_t _id = -1;
};

void GoTo(SystemCallSteps& steps, unsigned long call, bool isReturn) {
    for (std::optional<SystemCallSteps::Step> step; (step = steps.Next());) {
        if (step->call == call && step->isReturn == isReturn) {
            return;
        }
    }
    FAIL() << "it ended before";
}

TEST(SystemCallSteps, ShowEntryAndReturn) {
    const Process process;
    SystemCallSteps steps(process.Id());
    process.Go();
    GoTo(steps, SYS_getppid, false);
    EXPECT_TRUE(steps.Next()->isReturn);
    const auto second = steps.Next();
    EXPECT_EQ(second->call, static_cast<unsigned long>(SYS_getppid));
    EXPECT_FALSE(second->isReturn);
    steps.LetGo();
    EXPECT_EQ(process.Wait(), 7 << 8);
}

TEST(SystemCallSteps, SignalArrivesWhereTheProcessWaits) {
    const Process process;
    SystemCallSteps steps(process.Id());
    process.Go();
    GoTo(steps, SYS_getppid, true);
    kill(process.Id(), SIGTERM);
    steps.LetGo();
    EXPECT_EQ(process.Wait(), SIGTERM);
}

TEST(SystemCallSteps, EndWithTheProcess) {
    const Process process;
    SystemCallSteps steps(process.Id());
    process.Go();
    int count = 0;
    while (steps.Next()) {
        ++count;
    }
    EXPECT_GE(count, 7);
}

}  // namespace
}  // namespace Corvel::Testing
