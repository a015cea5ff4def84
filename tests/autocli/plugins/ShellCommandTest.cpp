#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellCommand.h"
#include "tests/autocli/plugins/ShellCommandFixture.h"
#include "tests/support/FullOutput.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::AutoCli {

namespace {

using Testing::kMegabyte;
using Testing::ReadFile;
using Testing::ShellCommand;
using Testing::TemporaryDirectory;

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

}  // namespace
}  // namespace Corvel::AutoCli
