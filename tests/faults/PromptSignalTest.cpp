// Signals at every point of a prompt for secrets: between its system calls, and while a line is typed.
// Whatever happens, the terminal is left as it was and shows nothing of the secret.
#include <signal.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/faults/PromptRun.h"

namespace Corvel::Testing {
namespace {

const std::string kPassword = "Enter value for 'password': ";
const std::string kToken = "Enter value for 'token': ";

const PromptingProgram kTwoPrompts = {
    "TwoPrompts",
    {CORVEL_SECRET_PROMPT_PROGRAM, "run", "--password", "--token"},
    {kPassword, kToken},
    "password=s3cret\r\ntoken=s3cret\r\n",
};
const PromptingProgram kQuorcli = {
    "Quorcli",
    {CORVEL_QUORCLI, "--plugin", CORVEL_PROMPT_DESCRIPTOR, "test", "tell", "-p"},
    {kPassword},
    "t3dsfu\r\n",
};

std::string Names(const std::vector<int>& signals) {
    std::string names;
    for (const int signal : signals) {
        names.append(names.empty() ? "" : " and ").append(sigabbrev_np(signal));
    }
    return names;
}

/// Of how many points in a row only one is tried: each time another one.
int Stride() {
    const char* text = std::getenv("CORVEL_PROMPT_STRIDE");
    return text == nullptr ? 1 : std::max(1, std::atoi(text));
}

int FirstPoint(const std::vector<int>& signals) {
    return std::accumulate(signals.begin(), signals.end(), 0) % Stride();
}

/// How many times something was tried, and where. It says so at its end.
class Tally {
public:
    explicit Tally(std::string what) : _what(std::move(what)) {}
    Tally(const Tally&) = delete;
    Tally& operator=(const Tally&) = delete;
    ~Tally() {
        int sum = 0;
        std::string places;
        for (const auto& [stage, count] : _counts) {
            sum += count;
            places += "; " + stage + ": " + std::to_string(count);
        }
        std::printf("%s: %d cases%s\n", _what.c_str(), sum, places.c_str());
    }

    void Add(const std::string& stage) { ++_counts[stage]; }

private:
    std::string _what;
    std::map<std::string, int> _counts;
};

class PromptSignals : public testing::TestWithParam<PromptingProgram> {
protected:
    static void SetUpTestSuite() {
        const rlimit noCoreFile = {0, 0};
        setrlimit(RLIMIT_CORE, &noCoreFile);
    }

    /// Takes a new run to each point in turn, and tries the signals there.
    static void AtEveryPoint(const PromptingProgram& program,
                             const std::vector<int>& signals,
                             const std::function<void(PromptRun&)>& expect) {
        Tally tally(Names(signals));
        for (int point = FirstPoint(signals); !HasFailure(); point += Stride()) {
            PromptRun run(program);
            if (!run.TakeTo(point)) {
                EXPECT_GT(point, 10);
                return;
            }
            const std::string stage = run.Stage();
            tally.Add(stage);
            SCOPED_TRACE(Names(signals) + " at point " + std::to_string(point) + ", " + stage);
            run.Send(signals);
            run.LetGo();
            expect(run);
        }
    }

    static void AtEveryPoint(const std::vector<int>& signals,
                             const std::function<void(PromptRun&)>& expect) {
        AtEveryPoint(GetParam(), signals, expect);
    }

    /// Has the first signal taken at the prompt, and tries the second one after each system call that
    /// is made for its sake. Where the first one stops the program, it is continued at once.
    static void WhileAnotherIsTaken(int first,
                                    int second,
                                    const std::function<void(PromptRun&)>& expect) {
        Tally tally(Names({first}) + ", later " + Names({second}));
        bool isThere = true;
        for (int calls = FirstPoint({first, second}); isThere && !HasFailure(); calls += Stride()) {
            PromptRun run(GetParam());
            run.TakeToReading();
            run.Send({first});
            run.Continue();
            for (int i = 0; i <= calls && isThere; ++i) {
                isThere = run.TakeOneCall();
            }
            tally.Add("while it takes its effect");
            SCOPED_TRACE(Names({first, second}) + " " + std::to_string(calls) + " calls later");
            run.Send({second});
            run.LetGo();
            expect(run);
        }
    }
};

TEST_P(PromptSignals, EndTheProgramWithTheTerminalAsItWas) {
    for (const int signal :
         {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGALRM, SIGUSR1, SIGUSR2}) {
        AtEveryPoint({signal}, [signal](PromptRun& run) { run.ExpectEnd(signal); });
    }
}

TEST_P(PromptSignals, StopTheProgramWithTheTerminalAsItWasAndItGoesOnSilently) {
    AtEveryPoint({SIGTSTP}, [](PromptRun& run) {
        run.ExpectStop();
        run.Continue();
        run.ExpectToGoOn();
    });
}

TEST_P(PromptSignals, EndTheProgramWhereItIsStopped) {
    for (const int signal : {SIGINT, SIGHUP}) {
        AtEveryPoint({SIGTSTP}, [signal](PromptRun& run) {
            run.ExpectStop();
            run.Send({signal});
            run.Continue();
            run.ExpectEnd(signal);
        });
    }
}

TEST_P(PromptSignals, ToContinueChangeNothing) {
    AtEveryPoint({SIGCONT}, [](PromptRun& run) { run.ExpectToGoOn(); });
}

/// The system gives the lower one to the program first; a stop is no way to escape an end.
TEST_P(PromptSignals, OfTwoAtOnceOneEndsTheProgram) {
    AtEveryPoint({SIGTERM, SIGINT}, [](PromptRun& run) { run.ExpectEnd(SIGINT); });
    AtEveryPoint({SIGHUP, SIGCONT}, [](PromptRun& run) { run.ExpectEnd(SIGHUP); });
    AtEveryPoint({SIGTSTP, SIGQUIT}, [](PromptRun& run) { run.ExpectEnd(SIGQUIT); });
}

TEST_P(PromptSignals, EndTheProgramWhileAnotherIsTaken) {
    WhileAnotherIsTaken(SIGTSTP, SIGINT, [](PromptRun& run) { run.ExpectEnd(SIGINT, true); });
    WhileAnotherIsTaken(SIGTSTP, SIGTERM, [](PromptRun& run) { run.ExpectEnd(SIGTERM, true); });
    WhileAnotherIsTaken(SIGCONT, SIGHUP, [](PromptRun& run) { run.ExpectEnd(SIGHUP); });
}

TEST_P(PromptSignals, DoNotHoldUpTheEndOfTheProgram) {
    WhileAnotherIsTaken(SIGHUP, SIGTSTP, [](PromptRun& run) { run.ExpectEnd(SIGHUP); });
    WhileAnotherIsTaken(SIGINT, SIGTERM, [](PromptRun& run) { run.ExpectEnd(SIGINT); });
}

/// Keys that are pressed while the terminal is made to echo again are part of the secret, too.
TEST_P(PromptSignals, LeaveNothingThatIsTypedUntilTheTerminalEchoes) {
    PromptRun run(GetParam());
    run.TakeToReading();
    run.Send({SIGTERM});
    do {
        run.TypeUnlessShown();
    } while (run.TakeOneCall());
    run.ExpectEnd(SIGTERM);
}

TEST_P(PromptSignals, StayIgnoredWhereTheParentIgnoresThem) {
    PromptingProgram program = GetParam();
    const std::string ignore = "trap '' HUP INT QUIT PIPE ALRM TERM USR1 USR2 TSTP; exec \"$@\"";
    program.arguments.insert(program.arguments.begin(), {"/bin/sh", "-c", ignore, "sh"});
    AtEveryPoint(program,
                 {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGALRM, SIGTERM, SIGUSR1, SIGUSR2, SIGTSTP},
                 [](PromptRun& run) { run.ExpectToGoOn(); });
}

INSTANTIATE_TEST_SUITE_P(Of,
                         PromptSignals,
                         testing::Values(kTwoPrompts, kQuorcli),
                         [](const auto& program) { return program.param.name; });

}  // namespace
}  // namespace Corvel::Testing
