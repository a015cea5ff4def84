#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellCommand.h"
#include "corvel/metaobj/CorvelException.h"
#include "tests/support/FullOutput.h"
#include "tests/support/ProcessState.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {

namespace {

using Testing::DescriptorLimit;
using Testing::HasChild;
using Testing::Interruptions;
using Testing::OpenDescriptors;
using Testing::ReadFile;
using Testing::TemporaryDirectory;
using Testing::ThrownText;

constexpr std::size_t kMegabyte = 1 << 20;

std::set<int> descriptorsBefore;

/// Every test must leave no hook, no descriptor and no child behind.
class ShellCommand : public testing::Test {
protected:
    void SetUp() override { descriptorsBefore = OpenDescriptors(); }
    void TearDown() override {
        SetChildRpNukOptionMaker(nullptr);
        SetCommandExecListener(nullptr);
        EXPECT_EQ(OpenDescriptors(), descriptorsBefore);
        EXPECT_FALSE(HasChild());
    }

    static std::string OutputOf(const std::string& command, const std::string& input = {}) {
        std::string output;
        AutoCli_ShellCmd(command, output, input);
        return output;
    }

    static std::string FailureOf(const std::string& command, const std::string& input = {}) {
        return ThrownText([&] { OutputOf(command, input); });
    }
};

TEST_F(ShellCommand, ExitCodeIsInTheReturnedWaitStatus) {
    std::string output;
    const int status = AutoCli_ShellCmd("exit 3", output, "");
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 3);
    EXPECT_EQ(output, "");
}

TEST_F(ShellCommand, SignalIsInTheReturnedWaitStatus) {
    std::string output;
    const int status = AutoCli_ShellCmd("echo before; kill -TERM $$", output, "");
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGTERM);
    EXPECT_EQ(output, "before\n");
}

TEST_F(ShellCommand, OutputIsAppendedToWhatIsThere) {
    std::string output = "kept ";
    EXPECT_EQ(AutoCli_ShellCmd("echo added", output, ""), 0);
    EXPECT_EQ(output, "kept added\n");
}

TEST_F(ShellCommand, EveryByteOfTheInputReachesTheChild) {
    std::string input;
    for (int byte = 0; byte < 256; ++byte) {
        input += static_cast<char>(byte);
    }
    EXPECT_EQ(OutputOf("cat", input), input);
}

TEST_F(ShellCommand, EmptyInputIsEndOfFileAtOnce) {
    EXPECT_EQ(OutputOf("if read line; then echo input; else echo end; fi"), "end\n");
}

TEST_F(ShellCommand, InputLargerThanAPipeIsWrittenWhole) {
    const std::string input(4 * kMegabyte, 'x');
    EXPECT_EQ(OutputOf("wc -c", input), std::to_string(input.size()) + "\n");
}

TEST_F(ShellCommand, OutputLargerThanAPipeIsReadWhole) {
    const std::string output = OutputOf("head -c 10000000 /dev/zero | tr '\\0' x");
    EXPECT_EQ(output.size(), 10000000U);
    EXPECT_EQ(output.find_first_not_of('x'), std::string::npos);
}

TEST_F(ShellCommand, StandardErrorIsTheCallers) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(OutputOf("echo out; echo err >&2"), "out\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "err\n");
}

TEST_F(ShellCommand, EnvironmentIsTheCallers) {
    setenv("CORVEL_TEST_VARIABLE", "of the caller", 1);
    EXPECT_EQ(OutputOf("echo $CORVEL_TEST_VARIABLE"), "of the caller\n");
    unsetenv("CORVEL_TEST_VARIABLE");
}

TEST_F(ShellCommand, ChildGetsNoDescriptorButTheStandardOnes) {
    const int inherited = open("/dev/null", O_RDONLY);  // NOLINT(android-cloexec-open): the point
    EXPECT_EQ(OutputOf("ls /proc/$$/fd; :"), "0\n1\n2\n");
    close(inherited);
}

TEST_F(ShellCommand, ChildStartsWithDefaultSigpipeAndEmptyMask) {
    sigset_t blocked;
    sigset_t saved;
    sigfillset(&blocked);
    pthread_sigmask(SIG_BLOCK, &blocked, &saved);
    signal(SIGPIPE, SIG_IGN);
    const std::string signals = OutputOf("exec grep -E '^Sig(Blk|Ign):' /proc/self/status");
    signal(SIGPIPE, SIG_DFL);
    pthread_sigmask(SIG_SETMASK, &saved, nullptr);

    EXPECT_EQ(signals.substr(0, signals.find('\n')), "SigBlk:\t0000000000000000");
    const unsigned long ignored = std::stoul(signals.substr(signals.rfind('\t')), nullptr, 16);
    EXPECT_EQ(ignored & (1UL << (SIGPIPE - 1)), 0U);
}

/// Notes whether the file of the child was there when the stream was flushed.
class FlushWitness : public std::stringbuf {
public:
    explicit FlushWitness(std::string file) : _file(std::move(file)) {}
    std::string textAtFlush;
    bool childHadRun = false;

protected:
    int sync() override {
        textAtFlush = str();
        childHadRun = std::filesystem::exists(_file);
        return 0;
    }

private:
    std::string _file;
};

TEST_F(ShellCommand, StandardOutputIsFlushedBeforeTheChildStarts) {
    const TemporaryDirectory directory;
    FlushWitness witness(directory.File("child"));
    std::streambuf* const saved = std::cout.rdbuf(&witness);
    std::cout << "printed so far";
    OutputOf("echo > " + directory.File("child"));
    std::cout.rdbuf(saved);
    EXPECT_EQ(witness.textAtFlush, "printed so far");
    EXPECT_FALSE(witness.childHadRun);
    EXPECT_EQ(ReadFile(directory.File("child")), "\n");
}

TEST_F(ShellCommand, StandardOutputThatCannotBeFlushedIsToldBeforeTheChildStarts) {
    const Testing::FullOutput full;
    testing::internal::CaptureStderr();
    std::cout << "printed so far";
    OutputOf("echo from the child >&2");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              std::string(Testing::kFullOutputMessage) + "from the child\n");
}

TEST_F(ShellCommand, SeveralThreadsRunChildrenAtOnce) {
    std::vector<std::string> outputs(4);
    std::vector<std::thread> threads;
    threads.reserve(outputs.size());
    for (std::string& output : outputs) {
        threads.emplace_back([&output, number = threads.size()] {
            for (int i = 0; i < 10; ++i) {
                AutoCli_ShellCmd("cat", output, std::to_string(number));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(outputs,
              (std::vector<std::string>{"0000000000", "1111111111", "2222222222", "3333333333"}));
}

// --- The extra option and the listener ---------------------------------------------------------

const std::string kPrintArguments = "tr '\\0' '|' < /proc/$$/cmdline | cat; :";

TEST_F(ShellCommand, WithoutMakerTheArgumentsAreTheShellDashCAndTheCommand) {
    EXPECT_EQ(OutputOf(kPrintArguments), "/bin/sh|-c|" + kPrintArguments + "|");
    EXPECT_EQ(MakeChildRpNukOption(5), "");
}

TEST_F(ShellCommand, WithMakerOfEmptyTextTheArgumentsAreTheShellDashCAndTheCommand) {
    SetChildRpNukOptionMaker([](int) { return std::string(); });
    EXPECT_EQ(OutputOf(kPrintArguments), "/bin/sh|-c|" + kPrintArguments + "|");
}

TEST_F(ShellCommand, OptionOfTheMakerStandsBeforeDashC) {
    static int askedFor = 0;
    SetChildRpNukOptionMaker([](int id) {
        askedFor = id;
        return std::string("-u");
    });
    EXPECT_EQ(OutputOf(kPrintArguments), "/bin/sh|-u|-c|" + kPrintArguments + "|");
    EXPECT_EQ(askedFor, -1);
    EXPECT_EQ(MakeChildRpNukOption(7), "-u");
    EXPECT_EQ(askedFor, 7);
}

std::vector<std::pair<std::string, int>> heard;

void Hear(const std::string& command, int status) {
    heard.emplace_back(command, status);
}

TEST_F(ShellCommand, ListenerHearsOfEveryFinishedCommandUntilItIsCleared) {
    heard.clear();
    SetCommandExecListener(Hear);
    OutputOf("exit 2");
    std::string output;
    AutoCli_ShellCmdWithQuenUsername("true", "ann", output, "");
    SetCommandExecListener(nullptr);
    OutputOf("true");
    EXPECT_EQ(heard,
              (std::vector<std::pair<std::string, int>>{{"exit 2", 2 << 8},
                                                        {"QUEN_USERNAME='ann' true", 0}}));
}

TEST_F(ShellCommand, ListenerFindsNoDescriptorOfTheCommand) {
    static std::set<int> found;
    found.clear();
    SetCommandExecListener([](const std::string&, int) { found = OpenDescriptors(); });
    OutputOf("echo a");
    EXPECT_EQ(found, descriptorsBefore);
}

TEST_F(ShellCommand, ListenerHearsNothingOfACommandThatFailed) {
    heard.clear();
    SetCommandExecListener(Hear);
    EXPECT_EQ(FailureOf("exec 0<&-", std::string(kMegabyte, 'x')),
              "Unable to write to sub-process: Broken pipe");
    EXPECT_TRUE(heard.empty());
}

TEST_F(ShellCommand, WhatAHookThrowsPassesThrough) {
    SetChildRpNukOptionMaker([](int) -> std::string { throw std::runtime_error("no pool"); });
    EXPECT_THROW(OutputOf("true"), std::runtime_error);
    SetChildRpNukOptionMaker(nullptr);
    SetCommandExecListener([](const std::string&, int) { throw std::runtime_error("no ear"); });
    EXPECT_THROW(OutputOf("true"), std::runtime_error);
}

// --- The user's name ---------------------------------------------------------------------------

TEST_F(ShellCommand, QuoteInTheUserNameIsEscapedInThePrefix) {
    heard.clear();
    SetCommandExecListener(Hear);
    std::string output;
    AutoCli_ShellCmdWithQuenUsername("true", "o'neil", output, "");
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_EQ(heard.front().first, "QUEN_USERNAME='o'\\''neil' true");
}

TEST_F(ShellCommand, EmptyUserNameAddsNothing) {
    heard.clear();
    SetCommandExecListener(Hear);
    std::string output;
    EXPECT_EQ(AutoCli_ShellCmdWithQuenUsername("cat; exit 4", "", output, "input"), 4 << 8);
    EXPECT_EQ(output, "input");
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_EQ(heard.front().first, "cat; exit 4");
}

TEST_F(ShellCommand, ShellSeesTheUserNameAsItIs) {
    for (const std::string name :
         {"ann", "o'neil", "''", "a b", "$(id)", "`id`;", "\\", "\"", "\n", "#", "\xc3\xa9\xff"}) {
        std::string output = "kept ";
        const int status = AutoCli_ShellCmdWithQuenUsername(
            "sh -c 'printf %s \"$QUEN_USERNAME\"; cat'", name, output, " input");
        EXPECT_EQ(status, 0) << name;
        EXPECT_EQ(output, "kept " + name + " input");
    }
}

// --- Failures ----------------------------------------------------------------------------------

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
    std::ranges::set_difference(OpenDescriptors(), descriptorsBefore, std::back_inserter(ends));
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
