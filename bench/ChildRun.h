#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Corvel::Bench {

/// What one run of a process took.
struct ChildRun {
    double wallSeconds = 0;
    double cpuSeconds = 0;  ///< user and system time, children that it waited for included
};

/// Runs one process with posix_spawn, its standard output and error going to the null device, and
/// waits for its end.
///
/// Failures: ends the program with a message when the process cannot be started or ends
///           otherwise than with the exit status expected: a figure of a failure is worth nothing.
/// @param arguments  the first is the program, searched in PATH when it has no slash.
/// @param inputPath  what becomes its standard input.
ChildRun RunChild(const std::vector<std::string>& arguments,
                  int expectedExitStatus = 0,
                  const char* inputPath = "/dev/null");

/// Runs `command` with /bin/sh between two pipes, with nothing but posix_spawn, read and waitpid.
/// @return the number of bytes that it printed.
std::size_t SpawnShell(const char* command);

}  // namespace Corvel::Bench
