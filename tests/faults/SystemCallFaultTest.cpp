#include <sys/prctl.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/faults/Scenarios.h"
#include "tests/faults/SystemCallScenarios.h"
#include "tests/faults/SystemCalls.h"

namespace Corvel::Testing {

std::ostream& operator<<(std::ostream& stream, const FaultedRun& run) {
    for (const std::string& call : run.failed) {
        stream << call << "\n";
    }
    return stream << run.ending;
}

namespace {

bool TriesAll() {
    return std::getenv("CORVEL_FAULTS_ALL") != nullptr;
}

/// How many faults came to what, in all tests of this process together.
class Tally : public testing::Environment {
public:
    static void Count(const std::string& call, const std::string& outcome) {
        ++_sCounts[outcome];
        ++_sCountsOfCalls[call][outcome];
    }

    void TearDown() override {
        Print("Faults in system calls", _sCounts);
        if (TriesAll()) {
            for (const auto& [call, counts] : _sCountsOfCalls) {
                Print(call, counts);
            }
        }
    }

private:
    using Counts = std::map<std::string, int>;

    static void Print(const std::string& title, const Counts& counts) {
        int sum = 0;
        std::string lines;
        for (const auto& [outcome, count] : counts) {
            sum += count;
            lines += "\n  " + std::to_string(count) + " " + outcome;
        }
        std::cout << title << ": " << sum << lines << std::endl;
    }

    static inline Counts _sCounts;
    static inline std::map<std::string, Counts> _sCountsOfCalls;
};

[[maybe_unused]] const auto* const kTally = testing::AddGlobalTestEnvironment(new Tally);

// --- What an invocation with a fault in it comes to ----------------------------------------------

constexpr const char* kWhole = "whole result";
constexpr const char* kTold = "told, status 1 (of a stream: that of its last line)";
constexpr const char* kUnheard = "told, but the telling was what failed; status as it should be";
constexpr const char* kSkipped = "told of a plug-in that is passed over, the rest as usual";
constexpr const char* kOfLoader = "the program does not start, with a message of the loader";
constexpr const char* kNotMade = "whole result, and the call was not made this time";

/// Whether a text tells of plug-ins that are passed over, which is no matter of the status.
bool TellsOfPlugin(const std::string& text) {
    constexpr std::array<std::string_view, 4> kBeginnings = {"Error loading plugin ",
                                                             "Unable to load plugin ",
                                                             "Unable to open directory ",
                                                             "Unable to read directory "};
    return std::any_of(kBeginnings.begin(), kBeginnings.end(), [&](std::string_view beginning) {
        return text.find(beginning) != std::string::npos;
    });
}

/// Whether writing to standard error failed, and nothing else is wrong.
bool IsUnheard(const Ending& whole, const FaultedRun& run) {
    const bool isLost = std::any_of(run.failed.begin(), run.failed.end(), [](const auto& call) {
        return call.starts_with("write(2,");
    });
    Ending heard = run.ending;
    heard.err = whole.err;
    return isLost && (heard == whole || (run.failed.size() > 1 && heard.status == 1));
}

/// @return one of the outcomes above, or what is wrong, with an exclamation mark at its end.
std::string OutcomeOf(const Scenario& scenario, const Ending& whole, const FaultedRun& run) {
    const Ending& ending = run.ending;
    if (ending == whole) {
        return run.failed.empty() ? kNotMade : kWhole;
    }
    if (IsUnheard(whole, run)) {
        return kUnheard;
    }
    if (ending.err == whole.err) {
        return "another ending, and nothing tells of it!";
    }
    const std::string complaint = Complaint(scenario, whole, ending);
    if (complaint.empty()) {
        return kTold;
    }
    const bool isSkipped = ending.status == whole.status && ending.signal == 0 && ending.echoes &&
                           TellsOfPlugin(ending.err);
    return isSkipped ? kSkipped : complaint + "!";
}

/// The same of an invocation in which something failed before main().
std::string OutcomeBeforeMain(const Ending& whole, const FaultedRun& run) {
    constexpr int kNotStarted = 127;
    const Ending& ending = run.ending;
    if (ending == whole) {
        return kWhole;
    }
    const bool isTold = ending.status == kNotStarted && !ending.err.empty() && ending.out.empty();
    return isTold ? kOfLoader : "neither whole nor not started!";
}

void Judge(const SystemCallFault& fault, const std::string& outcome, const FaultedRun& run) {
    Tally::Count(fault.call.name, outcome);
    EXPECT_FALSE(outcome.ends_with('!')) << outcome << "\n" << run;
}

// --- Children ----------------------------------------------------------------------------------

/// While it lives, processes that are left behind become children of this one.
class Heir {
public:
    Heir() { ::prctl(PR_SET_CHILD_SUBREAPER, 1); }
    Heir(const Heir&) = delete;
    Heir& operator=(const Heir&) = delete;
    ~Heir() { ::prctl(PR_SET_CHILD_SUBREAPER, 0); }

    /// Waits until the last of them has ended.
    /// @return how many there were.
    static int Bury() {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        int count = 0;
        pid_t ended = 0;
        while ((ended = ::waitpid(-1, nullptr, WNOHANG)) != -1) {
            count += ended == 0 ? 0 : 1;
            if (std::chrono::steady_clock::now() > deadline) {
                throw std::runtime_error("a process that was left behind does not end");
            }
            std::this_thread::yield();
        }
        return count;
    }
};

/// Whether the program was told that it has no child, though it has.
bool DeniesChildren(const SystemCallFault& fault) {
    return fault.error == "ECHILD";
}

// --- The faults --------------------------------------------------------------------------------

/// Those of some errors that are tried: the one whose turn it is, or all.
std::vector<std::string> Chosen(const std::vector<std::string>& errors, std::size_t turn) {
    if (errors.empty() || TriesAll()) {
        return errors;
    }
    return {errors[turn % errors.size()]};
}

/// The errors that a call, and all of its name after it, may give. Who is interrupted for ever gets
/// nowhere, and a terminal that takes no orders keeps no echo.
std::vector<std::string> LastingErrorsOf(const std::string& name) {
    std::vector<std::string> errors = name == "ioctl" ? std::vector<std::string>() : ErrorsOf(name);
    errors.erase(std::remove(errors.begin(), errors.end(), "EINTR"), errors.end());
    return errors;
}

class SystemCallFaults : public testing::TestWithParam<std::size_t> {
protected:
    void SetUp() override {
        ASSERT_TRUE(std::filesystem::exists(kStrace)) << "strace is not installed";
        ASSERT_EQ(ReasonAgainstTracing(), "");
    }

    static void Try(const Scenario& scenario, const Ending& whole, const SystemCallFault& fault) {
        const Heir heir;
        const FaultedRun run = RunWithFault(scenario, fault);
        const int leftChildren = Heir::Bury();
        Judge(fault, OutcomeOf(scenario, whole, run), run);
        EXPECT_TRUE(leftChildren == 0 || DeniesChildren(fault)) << leftChildren << "\n" << run;
    }
};

TEST_P(SystemCallFaults, LoseNothingWithoutAWord) {
    const Scenario& scenario = SystemCallScenarios()[GetParam()];
    const Ending whole = RunScenario(scenario);
    std::size_t turn = GetParam();
    for (const SystemCall& call : CallsOf(scenario).fromMainOn) {
        ++turn;
        for (const std::string& error : Chosen(ErrorsOf(call.name), turn)) {
            Try(scenario, whole, {call, error});
        }
        for (const std::string& error : Chosen(LastingErrorsOf(call.name), turn)) {
            Try(scenario, whole, {call, error, true});
        }
    }
}

std::string NameOf(const testing::TestParamInfo<std::size_t>& info) {
    std::string name = SystemCallScenarios()[info.param].name;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

std::size_t IndexOf(const std::string& name) {
    const auto& scenarios = SystemCallScenarios();
    const auto named = std::find_if(
        scenarios.begin(), scenarios.end(), [&](const Scenario& one) { return one.name == name; });
    return static_cast<std::size_t>(named - scenarios.begin());
}

INSTANTIATE_TEST_SUITE_P(In,
                         SystemCallFaults,
                         testing::Range(std::size_t{0}, SystemCallScenarios().size()),
                         NameOf);

using SystemCallFaultsOfChildren = SystemCallFaults;

/// What is done to the descriptors of a child before its program starts. The program itself makes none
/// of these calls.
TEST_P(SystemCallFaultsOfChildren, StartNoProgramOrTheRightOne) {
    const Scenario& scenario = SystemCallScenarios()[GetParam()];
    const Ending whole = RunScenario(scenario);
    for (const SystemCall& call : {SystemCall{"dup2", 1}, {"dup2", 2}, {"close_range", 1}}) {
        for (const std::string& error : ErrorsOf(call.name)) {
            Try(scenario, whole, {call, error, false, true});
        }
    }
}

INSTANTIATE_TEST_SUITE_P(In,
                         SystemCallFaultsOfChildren,
                         testing::Values(IndexOf("open descriptors of a session")),
                         NameOf);

/// The loader does not look whether its first allocation, of some of its own variables, succeeds.
bool EndsTheLoader(const SystemCall& call) {
    return call.name == "mmap" && call.occurrence == 1;
}

using SystemCallFaultsBeforeMain = SystemCallFaults;

TEST_P(SystemCallFaultsBeforeMain, AreTheLoadersToTell) {
    const Scenario& scenario = SystemCallScenarios()[GetParam()];
    const Ending whole = RunScenario(scenario);
    std::size_t turn = 0;
    for (const SystemCall& call : CallsOf(scenario).beforeMain) {
        ++turn;
        for (const std::string& error :
             EndsTheLoader(call) ? std::vector<std::string>() : Chosen(ErrorsOf(call.name), turn)) {
            const SystemCallFault fault = {call, error};
            const FaultedRun run = RunWithFault(scenario, fault);
            Judge(fault, OutcomeBeforeMain(whole, run), run);
        }
    }
}

/// The first scenario is as good as any other here.
INSTANTIATE_TEST_SUITE_P(In,
                         SystemCallFaultsBeforeMain,
                         testing::Values(IndexOf("listing")),
                         NameOf);

}  // namespace
}  // namespace Corvel::Testing
