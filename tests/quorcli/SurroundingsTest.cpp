#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/ProcessRunner.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {
namespace {

/// Commands whose children tell what is around them. The folder that the shell has open while it
/// looks for the descriptors is not there any more when they are told.
constexpr const char* kDescriptor = R"(<plugin><version>1.0.0</version>
<namespaces><namespace path="around"><description>Around.</description></namespace></namespaces>
<commands>
<command path="around.streams"><description>Open descriptors of the child.</description>
<input-spec/><output-spec><string/></output-spec>
<format-parameters><formatter>simple</formatter></format-parameters>
<execute>printf '&lt;output&gt;&lt;string&gt;'; cd /proc/$$/fd; for d in *; do [ ! -e $d ] || printf "$d "; done; printf '&lt;/string&gt;&lt;/output&gt;'</execute>
</command>
<command path="around.language"><description>LANG of the child.</description>
<input-spec/><output-spec><string/></output-spec>
<format-parameters><formatter>simple</formatter></format-parameters>
<execute>sh -c 'printf "&lt;output&gt;&lt;string&gt;$LANG&lt;/string&gt;&lt;/output&gt;"'</execute>
</command>
</commands></plugin>)";

/// What the first command prints: descriptors 0 to 2, and nothing else, are open in the child.
const std::string kStreams = "0 1 2 \n";

const std::string kOutputClosed = "Unable to write to standard output: Bad file descriptor\n";

class Surroundings : public testing::Test {
protected:
    Surroundings() : _descriptor(_folder.Write("around.xml", kDescriptor)) {}

    Command AroundCommand(const std::string& name) const {
        return {{CORVEL_QUORCLI, "--plugin", _descriptor, "around", name}};
    }

    Result RunPrepared(const std::function<void()>& prepare) const {
        Command command = AroundCommand("streams");
        command.prepare = prepare;
        return RunProcess(command);
    }

    TemporaryDirectory _folder;
    const std::string _descriptor;
};

// --- Standard streams --------------------------------------------------------------------------

/// All combinations: what was printed is there or its loss is told, and the child finds all three.
TEST_F(Surroundings, AnyOfTheStandardStreamsMayBeClosed) {
    for (unsigned closed = 0; closed < 8; ++closed) {
        const auto isClosed = [closed](unsigned stream) { return (closed >> stream & 1U) != 0; };
        const auto closeStreams = [&isClosed] {
            for (unsigned stream = 0; stream < 3; ++stream) {
                if (isClosed(stream)) {
                    ::close(static_cast<int>(stream));
                }
            }
        };
        const bool isLost = isClosed(STDOUT_FILENO);
        EXPECT_EQ(RunPrepared(closeStreams),
                  (Result{isLost ? 1 : 0,
                          isLost ? "" : kStreams,
                          isLost && !isClosed(STDERR_FILENO) ? kOutputClosed : ""}))
            << closed;

        Command lines = AroundCommand("streams");
        lines.arguments = {CORVEL_QUORCLI, "--plugin", _descriptor, "--input", "STDIN"};
        lines.input = "around streams\naround streams\n";
        lines.prepare = closeStreams;
        const bool isRead = !isClosed(STDIN_FILENO);
        EXPECT_EQ(RunProcess(lines),
                  (Result{isRead && isLost ? 1 : 0,
                          isRead && !isLost ? kStreams + kStreams : "",
                          isRead && isLost && !isClosed(STDERR_FILENO) ? kOutputClosed : ""}))
            << closed;
    }
}

TEST_F(Surroundings, FullStandardErrorChangesNoResult) {
    Command command = AroundCommand("streams");
    command.arguments.insert(command.arguments.begin() + 1, {"--plugin", "/nonexistent/a.xml"});
    command.prepare = [] { ::dup2(::open("/dev/full", O_WRONLY | O_CLOEXEC), STDERR_FILENO); };
    EXPECT_EQ(RunProcess(command), (Result{0, kStreams, ""}));
    command.arguments.back() = "nosuch";
    EXPECT_EQ(RunProcess(command), (Result{1, "", ""}));
}

/// Puts a pipe that nobody reads in the place of standard output.
void CloseReaderOfOutput() {
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC) == 0) {
        ::dup2(ends[1], STDOUT_FILENO);
    }
    ::close(ends[0]);
}

TEST_F(Surroundings, ReaderThatHasGoneEndsTheProgram) {
    EXPECT_EQ(RunPrepared(&CloseReaderOfOutput), (Result{128 + SIGPIPE, "", ""}));
}

// --- Signals -----------------------------------------------------------------------------------

TEST_F(Surroundings, ReaderThatHasGoneIsToldWhereTheParentIgnoresSigpipe) {
    const auto prepare = [] {
        ::signal(SIGPIPE, SIG_IGN);
        CloseReaderOfOutput();
    };
    EXPECT_EQ(RunPrepared(prepare),
              (Result{1, "", "Unable to write to standard output: Broken pipe\n"}));
}

TEST_F(Surroundings, ParentMayIgnoreSignals) {
    for (const int number : {SIGCHLD, SIGPIPE, SIGHUP, SIGTERM}) {
        EXPECT_EQ(RunPrepared([number] { ::signal(number, SIG_IGN); }), (Result{0, kStreams, ""}))
            << number;
    }
}

TEST_F(Surroundings, ParentMayBlockSignals) {
    const auto blockAll = [] {
        sigset_t all;
        ::sigfillset(&all);
        ::sigprocmask(SIG_SETMASK, &all, nullptr);
    };
    EXPECT_EQ(RunPrepared(blockAll), (Result{0, kStreams, ""}));
}

// --- Arguments and environment -----------------------------------------------------------------

/// Systems give such a program one empty argument, or none.
TEST_F(Surroundings, NoArgumentAtAllListsTheRoot) {
    Command command{{}};
    command.program = CORVEL_QUORCLI;
    EXPECT_EQ(
        RunProcess(command),
        (Result{1,
                "Usage:  [disp options] <namespaces> <command>\n"
                "\n"
                "For help please run  --help\n"
                "\n"
                "Available Namespaces: \n"
                "quorcli  Commands that operate on the quorcli system itself allowing users to "
                "get additional information.\n"
                "Available Commands: \n",
                ""}));
}

TEST_F(Surroundings, LanguageOfChildrenIsSetOnlyWhereTheCallerHasNone) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{}, "en_US.UTF-8\n"},
        {{"LANG="}, "\n"},
        {{"LANG=C"}, "C\n"},
        {{"LANG=de_DE.ISO-8859-1"}, "de_DE.ISO-8859-1\n"},
    };
    for (const auto& [environment, language] : cases) {
        Command command = AroundCommand("language");
        command.environment = environment;
        EXPECT_EQ(RunProcess(command), (Result{0, language, ""}));
    }
}

TEST_F(Surroundings, EmptyEnvironmentIsEnough) {
    Command command = AroundCommand("streams");
    command.environment.clear();
    EXPECT_EQ(RunProcess(command), (Result{0, kStreams, ""}));
}

// --- Descriptors and folders -------------------------------------------------------------------

/// They are not handed on to children.
TEST_F(Surroundings, TenThousandOpenDescriptorsAreNoMatter) {
    constexpr int kCount = 10000;
    struct rlimit limit = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    if (limit.rlim_max < kCount + 100) {
        GTEST_SKIP() << "the system allows " << limit.rlim_max << " descriptors only";
    }
    const auto openMany = [limit]() mutable {
        limit.rlim_cur = limit.rlim_max;
        if (::setrlimit(RLIMIT_NOFILE, &limit) != 0) {
            ::_exit(126);
        }
        for (int descriptor = 3; descriptor < kCount; ++descriptor) {
            if (::dup2(STDIN_FILENO, descriptor) != descriptor) {
                ::_exit(126);
            }
        }
    };
    EXPECT_EQ(RunPrepared(openMany), (Result{0, kStreams, ""}));
}

/// Each number of descriptors that a system may allow: the whole result, or the reason and status 1.
TEST_F(Surroundings, TooFewDescriptorsAreTold) {
    int failures = 0;
    for (rlim_t count = 3; count <= 10; ++count) {
        const Result result = RunPrepared([count] {
            const struct rlimit limit = {count, count};
            ::setrlimit(RLIMIT_NOFILE, &limit);
        });
        if (result.status == 0) {
            EXPECT_EQ(result, (Result{0, kStreams, ""})) << count;
        } else {
            ++failures;
            EXPECT_NE(result.err, "") << count;
            EXPECT_EQ(result.out, "") << count;
        }
    }
    EXPECT_GT(failures, 0);
    EXPECT_LT(failures, 8);
}

/// Shells complain of it; what needs no shell does not.
TEST_F(Surroundings, WorkingDirectoryMayBeGone) {
    const std::string gone = _folder.File("gone");
    Command command{{CORVEL_QUORCLI, "--plugin", _descriptor, "around"}};
    const Result usual = RunProcess(command);
    command.prepare = [&gone] {
        if (::mkdir(gone.c_str(), 0700) != 0 || ::chdir(gone.c_str()) != 0 ||
            ::rmdir(gone.c_str()) != 0) {
            ::_exit(126);
        }
    };
    EXPECT_EQ(RunProcess(command), usual);
    EXPECT_EQ(usual.err, "");
}

}  // namespace
}  // namespace Corvel::Testing
