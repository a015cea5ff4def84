#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <malloc.h>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/platform/Pipe.h"
#include "corvel/platform/Platform.h"
#include "tests/support/ProcessState.h"

namespace {

using Corvel::Platform::FileDescriptor;
using Corvel::Platform::Pipe;
using Corvel::Testing::HasChild;

/// @return the status code of the start; the child, if any, has ended.
std::uint64_t RunInShell(const std::string& command,
                         const std::vector<int>& descriptors,
                         const char* const* environment = nullptr) {
    const char* const arguments[] = {"/bin/sh", "-c", command.c_str(), nullptr};
    int pid = -1;
    const std::uint64_t code = NukuserCompat_ForkExec("/bin/sh",
                                                      arguments,
                                                      environment,
                                                      -1,
                                                      descriptors.data(),
                                                      descriptors.size(),
                                                      -1,
                                                      -1,
                                                      0,
                                                      &pid);
    if (code == 0) {
        EXPECT_EQ(waitpid(pid, nullptr, 0), pid);
    } else {
        EXPECT_EQ(pid, -1);
    }
    EXPECT_FALSE(HasChild());
    return code;
}

std::string ReadAll(Pipe& pipe) {
    pipe.writeEnd.Close();
    std::string text;
    EXPECT_EQ(pipe.readEnd.ReadToEnd(text), 0);
    return text;
}

class Nukuser : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(output.Open(), 0); }
    Pipe output;
};

TEST_F(Nukuser, ChildWritesWhereTheMapSays) {
    EXPECT_EQ(
        RunInShell("echo out; echo err >&2", {0, output.writeEnd.Get(), output.writeEnd.Get()}),
        0U);
    EXPECT_EQ(ReadAll(output), "out\nerr\n");
}

TEST_F(Nukuser, ChildHasNoDescriptorBeyondTheMap) {
    const int inherited = open("/dev/null", O_RDONLY);  // NOLINT(android-cloexec-open): the point
    EXPECT_EQ(RunInShell("ls /proc/$$/fd; :", {0, output.writeEnd.Get(), 2}), 0U);
    close(inherited);
    EXPECT_EQ(ReadAll(output), "0\n1\n2\n");
}

TEST_F(Nukuser, EmptyMapStartsTheChildWithoutDescriptors) {
    // Writes into a descriptor that would be there if it had been inherited.
    EXPECT_EQ(RunInShell("echo text >&" + std::to_string(output.writeEnd.Get()), {}), 0U);
    EXPECT_EQ(ReadAll(output), "");
}

TEST_F(Nukuser, EnvironmentIsTheGivenOneOrTheCallers) {
    const char* const environment[] = {"A=given", nullptr};
    setenv("A", "inherited", 1);
    EXPECT_EQ(RunInShell("echo $A", {0, output.writeEnd.Get(), 2}, environment), 0U);
    EXPECT_EQ(RunInShell("echo $A", {0, output.writeEnd.Get(), 2}), 0U);
    unsetenv("A");
    EXPECT_EQ(ReadAll(output), "given\ninherited\n");
}

TEST_F(Nukuser, ChildHasNoSignalBlockedAndTheDefaultForSigpipe) {
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    signal(SIGPIPE, SIG_IGN);
    const std::string status = "sed -n 's/^Sig\\(Blk\\|Ign\\):.//p' /proc/$$/status";
    EXPECT_EQ(RunInShell(status, {0, output.writeEnd.Get(), 2}), 0U);
    signal(SIGPIPE, SIG_DFL);
    pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
    const std::string masks = ReadAll(output);
    const std::size_t lineEnd = masks.find('\n');
    EXPECT_EQ(masks.substr(0, lineEnd), "0000000000000000");
    EXPECT_EQ(std::stoull(masks.substr(lineEnd), nullptr, 16) & 1U << (SIGPIPE - 1), 0U) << masks;
}

TEST_F(Nukuser, MapIsReadNoFurtherThanItsCount) {
    constexpr int kNone = -7;
    const int around[] = {kNone, 0, output.writeEnd.Get(), 2, kNone};
    const char* const arguments[] = {"/bin/echo", "text", nullptr};
    int pid = -1;
    EXPECT_EQ(NukuserCompat_ForkExec(
                  arguments[0], arguments, nullptr, -1, around + 1, 3, -1, -1, 0, &pid),
              0U);
    EXPECT_EQ(waitpid(pid, nullptr, 0), pid);
    EXPECT_EQ(ReadAll(output), "text\n");
}

TEST_F(Nukuser, LeavesNoMemoryBehind) {
    const std::vector<int> map = {0, output.writeEnd.Get(), 2};
    RunInShell(":", map);
    const std::size_t before = mallinfo2().uordblks;
    for (int i = 0; i < 10; ++i) {
        RunInShell(":", map);
    }
    EXPECT_EQ(mallinfo2().uordblks, before);
}

TEST_F(Nukuser, FailuresAreStatusCodesAndStartNothing) {
    EXPECT_EQ(RunInShell(std::string(1 << 20, ':'), {0, 1, 2}), static_cast<std::uint64_t>(E2BIG));
    EXPECT_EQ(RunInShell("true", {-1, 1, 2}), static_cast<std::uint64_t>(EBADF));
    EXPECT_EQ(RunInShell("true", {0, 1, output.writeEnd.Get() + 1000}),
              static_cast<std::uint64_t>(EBADF));
}

// The descriptors of a map may have any numbers of the map itself. These run in a process of their
// own, whose descriptors 0, 1 and 2 are three files to tell apart.

void PutAt(int number, const Pipe& target) {
    dup2(target.writeEnd.Get(), number);
}

/// @return what the child's descriptors 0, 1 and 2 are: one letter each for what was 0, 1 or 2 of
///         the caller.
std::string Permuted(const std::vector<int>& map) {
    Pipe pipes[3];
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(pipes[i].Open(), 0);
        PutAt(i, pipes[i]);
    }
    RunInShell("printf 0 >&0; printf 1 >&1; printf 2 >&2", map);
    std::string reached;
    for (int i = 0; i < 3; ++i) {
        close(i);
        reached +=
            std::string(i == 0 ? "" : " ") + static_cast<char>('a' + i) + "=" + ReadAll(pipes[i]);
    }
    return reached;
}

struct MapCase {
    const char* name;
    std::vector<int> map;
    std::string reached;
};

TEST(NukuserDeathTest, MapsMayOverlap) {
    const MapCase cases[] = {
        {"identity", {0, 1, 2}, "a=0 b=1 c=2"},
        {"swap", {1, 0, 2}, "a=1 b=0 c=2"},
        {"rotation", {1, 2, 0}, "a=2 b=0 c=1"},
        {"rotation back", {2, 0, 1}, "a=1 b=2 c=0"},
        {"all the same", {1, 1, 1}, "a= b=012 c="},
        {"first and last swapped", {2, 1, 0}, "a=2 b=1 c=0"},
    };
    for (const MapCase& each : cases) {
        EXPECT_EXIT(
            _exit(Permuted(each.map) == each.reached ? 0 : 1), testing::ExitedWithCode(0), "")
            << each.name;
    }
}

TEST(NukuserDeathTest, MapMayOverlapAndReachFarBeyond) {
    const auto arrives = [] {
        Pipe pipes[3];
        for (Pipe& pipe : pipes) {
            EXPECT_EQ(pipe.Open(), 0);
        }
        PutAt(0, pipes[0]);
        PutAt(1, pipes[1]);
        const int far = pipes[2].writeEnd.Get();
        RunInShell("printf 0 >&0; printf 1 >&1; printf 2 >&2", {1, 0, far});
        close(0);
        close(1);
        return ReadAll(pipes[0]) + ' ' + ReadAll(pipes[1]) + ' ' + ReadAll(pipes[2]);
    };
    EXPECT_EXIT(_exit(arrives() == "1 0 2" ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(NukuserDeathTest, DescriptorThatKeepsItsNumberReachesTheChildDespiteCloseOnExec) {
    const auto reaches = [] {
        Pipe pipe;
        const bool isOpen = pipe.Open() == 0;
        dup3(pipe.writeEnd.Get(), 2, O_CLOEXEC);
        const bool isStarted = RunInShell("printf text >&2", {0, 1, 2}) == 0;
        close(2);
        return isOpen && isStarted && ReadAll(pipe) == "text";
    };
    EXPECT_EXIT(_exit(reaches() ? 0 : 1), testing::ExitedWithCode(0), "");
}

// --- The text of a status code -----------------------------------------------------------------

std::string TextOf(std::uint64_t code, std::size_t size) {
    std::string buffer(size + 1, '#');
    NukuserStatus_CodeToString(code, buffer.data(), size, 0);
    EXPECT_EQ(buffer.back(), '#') << "written beyond the buffer";
    return buffer.substr(0, std::min(size, buffer.find('\0')));
}

TEST(NukuserStatus, TextIsTheSystemsForTheLow32Bits) {
    EXPECT_EQ(TextOf(ENOENT, 200), "No such file or directory");
    EXPECT_EQ(TextOf((std::uint64_t{7} << 32) | E2BIG, 200), "Argument list too long");
    EXPECT_EQ(TextOf(0, 200), "Success");
}

TEST(NukuserStatus, TextIsCutToTheBuffer) {
    EXPECT_EQ(TextOf(ENOENT, 8), "No such");
    EXPECT_EQ(TextOf(ENOENT, 1), "");
    EXPECT_EQ(TextOf(ENOENT, 0), "");
}

}  // namespace
