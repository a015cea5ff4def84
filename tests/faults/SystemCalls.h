#pragma once

#include <string>
#include <vector>

#include "tests/faults/Scenarios.h"

namespace Corvel::Testing {

/// What lets system calls fail.
constexpr const char* kStrace = "/usr/bin/strace";

/// A system call that quorcli itself has made; those of its children are left alone.
struct SystemCall {
    std::string name;
    /// Which one of that name it is since the start of the process, the first being 1.
    int occurrence = 0;
};

/// All that an invocation makes, in their order.
struct SystemCalls {
    /// Up to the beginning of main(): those of the loader and of the libraries that get ready.
    std::vector<SystemCall> beforeMain;
    std::vector<SystemCall> fromMainOn;
};

/// An order to let one system call fail, or all of its name from that one on. It is not made at all
/// then.
struct SystemCallFault {
    SystemCall call;
    /// The name of an errno value.
    std::string error;
    bool isLasting = false;
    /// Each process that the program starts counts its own calls, and those are meant, too.
    bool isForChildren = false;
};

/// An invocation in which system calls were to fail.
struct FaultedRun {
    Ending ending;
    /// Those that failed, as strace writes them: name(arguments) = -1 ERROR ...
    std::vector<std::string> failed;
};

/// Why no system call can be watched here; empty when they can.
std::string ReasonAgainstTracing();

/// Failures: std::runtime_error when the beginning of main() is not to be found.
SystemCalls CallsOf(const Scenario& scenario);

/// The errors with which the system may answer a call, however rightly it is made; none for calls
/// that do not fail.
const std::vector<std::string>& ErrorsOf(const std::string& name);

FaultedRun RunWithFault(const Scenario& scenario, const SystemCallFault& fault);

}  // namespace Corvel::Testing
