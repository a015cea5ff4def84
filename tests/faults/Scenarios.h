#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace Corvel::Testing {

/// One invocation of quorcli in which faults are tried.
struct Scenario {
    /// A few words, in which no two are the same.
    std::string name;
    /// Behind the program's own name.
    std::vector<std::string> arguments;
    /// What stands on its standard input.
    std::string input = {};
    /// Where set, the program runs on a terminal, and this is typed when it prompts for a secret.
    std::optional<std::string> typed = {};
    /// How many lines of standard input it reads as command lines. Its status is that of the last.
    int lineCount = 0;
};

/// The name.
std::ostream& operator<<(std::ostream& stream, const Scenario& scenario);

/// The invocations that stand for all that the program does.
const std::vector<Scenario>& Scenarios();

/// What is done to an invocation.
struct Intervention {
    /// A program with its arguments that runs the command line behind them, such as a tracer.
    std::vector<std::string> prefix = {};
    /// "NAME=value" each, beside what the program finds anyway.
    std::vector<std::string> environment = {};
};

/// How an invocation ended.
struct Ending {
    /// Its exit status; -1 when a signal ended it.
    int status = -1;
    /// The signal that ended it, or 0.
    int signal = 0;
    /// What it wrote to standard output. On a terminal, what can be seen there.
    std::string out = {};
    std::string err = {};
    /// Whether the terminal shows what is typed, as it did before.
    bool echoes = true;

    bool operator==(const Ending&) const = default;
};

/// For the message of a failed comparison.
std::ostream& operator<<(std::ostream& stream, const Ending& ending);

/// Runs quorcli to its end. One that has not ended after 20 seconds is ended by SIGALRM, or, on a
/// terminal, by SIGKILL.
Ending RunScenario(const Scenario& scenario, const Intervention& intervention = {});

/// What is wrong with the ending of an invocation in which something failed. Right are the ending
/// that it has when nothing fails, and a text on standard error with status 1. When command lines are
/// read from a stream, the status is that of the last one, and each of the others has its result or
/// an error text.
/// @param whole  how it ends when nothing fails.
/// @return empty when all is well.
std::string Complaint(const Scenario& scenario, const Ending& whole, const Ending& ending);

}  // namespace Corvel::Testing
