#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace Corvel::Testing {

/// What every program under test finds around it unless its test says otherwise: no variable of
/// the tester's own leaks in.
std::vector<std::string> FixedEnvironment();

/// A program to run.
struct Command {
    /// The argument vector; the first one is the program's path, in which no PATH is searched, unless
    /// `program` names another.
    std::vector<std::string> arguments;
    /// What stands on its standard input.
    std::string input = {};
    /// "NAME=value" each.
    std::vector<std::string> environment = FixedEnvironment();
    /// Where it starts; empty means where the test runs.
    std::string directory = {};
    /// The program's path, for an argument vector that does not begin with it.
    std::string program = {};
    /// Done in the new process right before its program starts, when its streams are in place.
    std::function<void()> prepare = {};
};

/// How a program ended.
struct Result {
    /// Its exit status; 128 + the signal that ended it, as shells count.
    int status = -1;
    std::string out;
    std::string err;

    bool operator==(const Result&) const = default;
};

/// For the message of a failed comparison.
std::ostream& operator<<(std::ostream& stream, const Result& result);

/// Runs a program to its end. Its standard streams are files, so it never waits for the test; one
/// that does not end within a minute is ended by SIGALRM.
///
/// Failures: a program that cannot be started gives status 127. Throws std::system_error when the
///           system has no room for another process.
Result RunProcess(const Command& command);

/// Runs a line of shell language with /bin/sh.
Result RunShell(const std::string& line, const std::string& input = {});

}  // namespace Corvel::Testing
