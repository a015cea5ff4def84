#include <errno.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>

#include <functional>

#include <gtest/gtest.h>

#include "corvel/platform/ChildProcess.h"
#include "corvel/platform/Pipe.h"
#include "tests/support/ProcessState.h"

namespace Corvel::Testing {

namespace {

/// What happens when poll() has been called, which then waits for as long as it takes.
std::function<void()> onPoll;

/// How often a process was asked about.
int waits = 0;

}  // namespace

// The linker puts these in front of the system's (--wrap).
decltype(waitpid) RealWaitpid __asm__("__real_waitpid");
decltype(waitpid) CountedWaitpid __asm__("__wrap_waitpid");
decltype(poll) RealPoll __asm__("__real_poll");
decltype(poll) HookedPoll __asm__("__wrap_poll");

[[gnu::used]] pid_t CountedWaitpid(pid_t pid, int* status, int options) {
    ++waits;
    return RealWaitpid(pid, status, options);
}

[[gnu::used]] int HookedPoll(pollfd* descriptors, nfds_t count, int milliseconds) {
    if (onPoll == nullptr) {
        return RealPoll(descriptors, count, milliseconds);
    }
    onPoll();
    EXPECT_EQ(count, 1U);
    return RealPoll(descriptors, 1, -1);
}

}  // namespace Corvel::Testing

namespace Corvel::Platform {

namespace {

using Testing::HasChild;
using Testing::Interruptions;
using Testing::onPoll;
using Testing::waits;

constexpr std::array<int, 3> kOwnDescriptors = {0, 1, 2};

std::uint64_t StartShell(ChildProcess& child, const std::string& command) {
    return child.Start({"/bin/sh", "-c", command}, kOwnDescriptors);
}

TEST(ChildProcess, WaitGivesTheStatus) {
    ChildProcess child;
    ASSERT_EQ(StartShell(child, "exit 9"), 0U);
    int status = -1;
    EXPECT_EQ(child.Wait(status), 0);
    EXPECT_EQ(status, 9 << 8);
    EXPECT_FALSE(HasChild());
}

TEST(ChildProcess, WaitingGoesOnAfterAnInterruption) {
    ChildProcess child;
    ASSERT_EQ(StartShell(child, "sleep 0.05; exit 9"), 0U);
    const Interruptions interruptions;
    int status = -1;
    EXPECT_EQ(child.Wait(status), 0);
    EXPECT_GT(Interruptions::Count(), 0);
    EXPECT_EQ(status, 9 << 8);
}

TEST(ChildProcess, WaitForAChildThatIsGoneLeavesTheStatusAlone) {
    signal(SIGCHLD, SIG_IGN);
    ChildProcess child;
    ASSERT_EQ(StartShell(child, "exit 9"), 0U);
    int status = -1;
    EXPECT_EQ(child.Wait(status), ECHILD);
    EXPECT_EQ(status, -1);
    signal(SIGCHLD, SIG_DFL);
}

TEST(ChildProcess, IsNotAskedAboutOnceItsEndIsKnown) {
    // Its number may be that of another child by then.
    for (const bool isIgnored : {false, true}) {
        signal(SIGCHLD, isIgnored ? SIG_IGN : SIG_DFL);
        {
            ChildProcess child;
            ASSERT_EQ(StartShell(child, "exit 9"), 0U);
            int status = -1;
            EXPECT_EQ(child.Wait(status), isIgnored ? ECHILD : 0);
            waits = 0;
        }
        EXPECT_EQ(waits, 0) << isIgnored;
    }
    signal(SIGCHLD, SIG_DFL);
}

TEST(ChildProcess, ArgumentWithANulIsRefused) {
    ChildProcess child;
    EXPECT_EQ(child.Start({"/bin/sh", std::string(1, '\0')}, kOwnDescriptors),
              static_cast<std::uint64_t>(EINVAL));
    EXPECT_FALSE(HasChild());
}

TEST(ChildProcess, ProgramThatIsMissingGivesItsStatusCode) {
    ChildProcess child;
    EXPECT_EQ(child.Start({"/nonexistent/program"}, kOwnDescriptors),
              static_cast<std::uint64_t>(ENOENT));
    EXPECT_FALSE(HasChild());
}

TEST(ChildProcess, ChildThatIsJustEndingIsReapedByTheDestructor) {
    {
        ChildProcess child;
        ASSERT_EQ(StartShell(child, "exit 0"), 0U);
    }
    EXPECT_FALSE(HasChild());
}

TEST(ChildProcess, ChildThatEndsWhileTheDestructorWaitsIsReaped) {
    Pipe pipe;
    ASSERT_EQ(pipe.Open(), 0);
    {
        ChildProcess child;
        ASSERT_EQ(child.Start({"/bin/cat"}, {pipe.readEnd.Get(), 1, 2}), 0U);
        onPoll = [&pipe] { pipe.writeEnd.Close(); };
    }
    onPoll = nullptr;
    EXPECT_FALSE(pipe.writeEnd.IsOpen());
    EXPECT_FALSE(HasChild());
}

TEST(ChildProcess, ChildThatHasEndedIsReapedByTheDestructor) {
    Pipe pipe;
    ASSERT_EQ(pipe.Open(), 0);
    {
        ChildProcess child;
        ASSERT_EQ(child.Start({"/bin/true"}, {0, pipe.writeEnd.Get(), 2}), 0U);
        siginfo_t ended{};
        ASSERT_EQ(waitid(P_ALL, 0, &ended, WEXITED | WNOWAIT), 0);
    }
    EXPECT_FALSE(HasChild());
}

TEST(ChildProcess, ChildThatLivesOnIsLeftAlone) {
    Pipe pipe;
    ASSERT_EQ(pipe.Open(), 0);
    {
        ChildProcess child;
        ASSERT_EQ(child.Start({"/bin/cat"}, {pipe.readEnd.Get(), 1, 2}), 0U);
    }
    EXPECT_TRUE(HasChild());
    pipe.writeEnd.Close();
    int status = -1;
    EXPECT_GT(wait(&status), 0);
    EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace Corvel::Platform
