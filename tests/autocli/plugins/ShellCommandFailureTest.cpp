#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellCommand.h"
#include "corvel/metaobj/CorvelException.h"
#include "tests/autocli/plugins/ShellCommandFixture.h"
#include "tests/support/ProcessState.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::AutoCli {

namespace {

using Testing::DescriptorLimit;
using Testing::Interruptions;
using Testing::kMegabyte;
using Testing::OpenDescriptors;
using Testing::ReadFile;
using Testing::ShellCommand;
using Testing::TemporaryDirectory;

/// A sanitizer opens a pipe to look at the first object of each class; this shows it those that the
/// tests below meet, while there is room.
void ShowClassesToTheSanitizer() {
    std::string output;
    AutoCli_ShellCmd("true", output, "");
    try {
        AutoCli_ShellCmd(std::string(1, '\0'), output, "");
    } catch (const CorvelException& e) {
        EXPECT_STRNE(e.what(), "");
    }
}

/// Leaves room for so many more descriptors.
DescriptorLimit RoomFor(int count) {
    ShowClassesToTheSanitizer();
    int limit = 0;
    const std::set<int> open = OpenDescriptors();
    for (int free = 0; free < count; ++limit) {
        free += open.count(limit) == 0 ? 1 : 0;
    }
    return DescriptorLimit(limit);
}

TEST_F(ShellCommand, NoRoomForTheInputPipe) {
    for (const int room : {0, 1}) {
        const DescriptorLimit limit = RoomFor(room);
        EXPECT_EQ(FailureOf("true"), "Can't create input pipe: Too many open files");
    }
}

TEST_F(ShellCommand, NoRoomForTheOutputPipe) {
    for (const int room : {2, 3}) {
        const DescriptorLimit limit = RoomFor(room);
        EXPECT_EQ(FailureOf("true"), "Can't create output pipe: Too many open files");
    }
}

TEST_F(ShellCommand, FourDescriptorsAreRoomEnough) {
    const DescriptorLimit limit = RoomFor(4);
    EXPECT_EQ(OutputOf("echo done"), "done\n");
}

TEST_F(ShellCommand, CommandThatIsTooLongCannotBeStarted) {
    const std::string command(3 * kMegabyte, ':');
    EXPECT_EQ(FailureOf(command),
              "Failed to call process '" + command + "': Argument list too long");
}

TEST_F(ShellCommand, CommandWithANulIsRefusedNotCut) {
    const TemporaryDirectory directory;
    const std::string command = "echo > " + directory.File("child");
    // The text of an exception ends where its command has the NUL.
    EXPECT_EQ(FailureOf(command + std::string(1, '\0')), "Failed to call process '" + command);
    EXPECT_FALSE(std::filesystem::exists(directory.File("child")));
}

TEST_F(ShellCommand, OptionWithANulIsRefusedNotCut) {
    SetChildRpNukOptionMaker([](int) { return std::string("-u\0-e", 5); });
    EXPECT_EQ(FailureOf("true"), "Failed to call process 'true': Invalid argument");
}

TEST_F(ShellCommand, ChildThatClosesItsInputEarlyIsAnExceptionAndNoSignal) {
    sigset_t before;
    pthread_sigmask(SIG_SETMASK, nullptr, &before);
    EXPECT_EQ(FailureOf("exec 0<&-", std::string(kMegabyte, 'x')),
              "Unable to write to sub-process: Broken pipe");
    sigset_t after;
    pthread_sigmask(SIG_SETMASK, nullptr, &after);
    EXPECT_EQ(sigismember(&after, SIGPIPE), sigismember(&before, SIGPIPE));
    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

TEST_F(ShellCommand, ChildThatLivesOnAfterAnExceptionIsNotWaitedFor) {
    const TemporaryDirectory directory;
    const auto start = std::chrono::steady_clock::now();
    const std::string failure =
        FailureOf("echo $$ > " + directory.File("pid") + "; exec 0<&- 1>&- sleep 60",
                  std::string(kMegabyte, 'x'));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_EQ(failure, "Unable to write to sub-process: Broken pipe");
    const int pid = std::stoi(ReadFile(directory.File("pid")));
    EXPECT_EQ(waitpid(pid, nullptr, WNOHANG), 0);
    kill(pid, SIGKILL);
    EXPECT_EQ(waitpid(pid, nullptr, 0), pid);
}

/// The maker of the extra option is asked when both pipes are there, and so can spoil them: input's
/// read and write end are the first and second new descriptor, output's the third and fourth.
template <int Which>
std::string ReplacePipeEndByFolder(int) {
    std::vector<int> ends;
    std::ranges::set_difference(
        OpenDescriptors(), ShellCommand::DescriptorsBefore(), std::back_inserter(ends));
    const int folder = open("/", O_RDONLY | O_CLOEXEC);
    dup3(folder, ends.at(Which), O_CLOEXEC);
    close(folder);
    return {};
}

TEST_F(ShellCommand, InputThatCannotBeWritten) {
    SetChildRpNukOptionMaker(ReplacePipeEndByFolder<1>);
    EXPECT_EQ(FailureOf("true", "input"), "Unable to write to sub-process: Bad file descriptor");
}

TEST_F(ShellCommand, OutputThatCannotBeRead) {
    SetChildRpNukOptionMaker(ReplacePipeEndByFolder<2>);
    EXPECT_EQ(FailureOf("true"), "Unable to read from sub-process: Is a directory");
}

TEST_F(ShellCommand, ChildThatSomebodyElseHasReaped) {
    signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(FailureOf("true"), "Error waiting for process 'true': No child processes");
    signal(SIGCHLD, SIG_DFL);
}

TEST_F(ShellCommand, SignalsInterruptNeitherWritingNorReadingNorWaiting) {
    const std::string input(4 * kMegabyte, 'x');
    std::string output;
    const Interruptions interruptions;
    // Full input pipe; empty output pipe; nothing but the end to wait for.
    const int status = AutoCli_ShellCmd(
        "sleep 0.1; wc -c; sleep 0.1; exec 1>&-; sleep 0.1; exit 5", output, input);
    EXPECT_GT(Interruptions::Count(), 0);
    EXPECT_EQ(status, 5 << 8);
    EXPECT_EQ(output, std::to_string(input.size()) + "\n");
}

}  // namespace
}  // namespace Corvel::AutoCli
