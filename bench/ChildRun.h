#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Running child processes and taking their time. A figure of a failure is worth nothing: each
/// function ends the program with a message when the process cannot be started or ends otherwise
/// than expected.
namespace Corvel::Bench {

/// What one run of a process took.
struct ChildRun {
    double wallSeconds = 0;
    double cpuSeconds = 0;  ///< user and system time, children that it waited for included
};

/// Runs one process with posix_spawn, its standard output and error going to the null device, and
/// waits for its end.
/// @param arguments  the first is the program, searched in PATH when it has no slash.
/// @param inputPath  what becomes its standard input.
ChildRun RunChild(const std::vector<std::string>& arguments,
                  int expectedExitStatus = 0,
                  const char* inputPath = "/dev/null");

/// Runs a process that takes the time of a part of its work itself and prints it (TellTimeOf).
/// @return what it printed, not what the process took as a whole.
ChildRun RunTellingChild(const std::vector<std::string>& arguments);

/// Runs `command` with /bin/sh between two pipes, with nothing but posix_spawn, read and waitpid.
/// @return what it printed.
std::string SpawnShell(const char* command);

}  // namespace Corvel::Bench
