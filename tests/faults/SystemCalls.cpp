#include "tests/faults/SystemCalls.h"

#include <algorithm>
#include <map>
#include <sstream>
#include <stdexcept>

#include "tests/support/ProcessRunner.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {

namespace {

/// The very first thing that main() does.
const std::string kBeginningOfMain = "fcntl(0, F_GETFD)";

using Errors = std::vector<std::string>;

/// Calls that do not come back, or can fail only when they are made wrongly: only signals of our own
/// and memory of our own are given to them, and one thread wakes others but never waits. strace does
/// not make a call that it lets fail; a close that fails, however, has closed. ShortTransfers.cpp
/// does that one rightly.
const Errors kDoNotFail = {"arch_prctl",
                           "close",
                           "execve",
                           "exit_group",
                           "futex",
                           "getegid",
                           "geteuid",
                           "getgid",
                           "getpid",
                           "gettid",
                           "getuid",
                           "rseq",
                           "rt_sigaction",
                           "rt_sigpending",
                           "rt_sigprocmask",
                           "rt_sigreturn",
                           "set_robust_list",
                           "set_tid_address"};

/// What the manual pages name, and file systems answer, of troubles that come and go: who lacks a right
/// lacks it every time.
const std::map<std::string, Errors> kErrors = {
    {"access", {"EIO", "ENOMEM"}},
    {"brk", {"ENOMEM"}},
    {"clone", {"EAGAIN", "ENOMEM"}},
    {"clone3", {"EAGAIN", "ENOMEM"}},
    {"close_range", {"EINVAL", "EMFILE", "ENOMEM", "ENOSYS"}},
    {"dup2", {"EINTR", "EMFILE", "EBUSY"}},
    {"fcntl", {"EINTR", "EMFILE", "ENOMEM"}},
    {"fstat", {"ENOMEM", "EIO"}},
    {"getcwd", {"ENOMEM", "ENOENT"}},
    {"getdents64", {"EINTR", "EIO", "ENOMEM"}},
    {"getrandom", {"EINTR", "EAGAIN", "ENOSYS"}},
    {"ioctl", {"EINTR", "EIO"}},
    {"lseek", {"ESPIPE", "EIO"}},
    {"mmap", {"ENOMEM", "EAGAIN", "ENFILE"}},
    {"mprotect", {"ENOMEM"}},
    {"munmap", {"ENOMEM"}},
    {"newfstatat", {"ENOMEM", "EIO"}},
    {"openat", {"EINTR", "EMFILE", "ENFILE", "ENOMEM", "EIO"}},
    {"pidfd_open", {"EMFILE", "ENFILE", "ENOMEM", "ENOSYS"}},
    {"pipe2", {"EMFILE", "ENFILE", "ENOMEM"}},
    {"poll", {"EINTR", "ENOMEM"}},
    {"pread64", {"EINTR", "EAGAIN", "EIO"}},
    {"prlimit64", {"EPERM"}},
    {"read", {"EINTR", "EIO", "EAGAIN", "ENOMEM"}},
    {"readlink", {"EIO", "ENOMEM"}},
    {"rt_sigtimedwait", {"EINTR", "EAGAIN"}},
    {"vfork", {"EAGAIN", "ENOMEM"}},
    {"wait4", {"EINTR", "ECHILD"}},
    {"write", {"EINTR", "EIO", "ENOSPC", "EPIPE", "EAGAIN"}},
    {"writev", {"EINTR", "EIO", "ENOSPC", "EPIPE", "EAGAIN"}},
};

/// Of calls that nobody has thought of.
const Errors kUsualErrors = {"EINTR", "EIO", "ENOMEM", "EMFILE", "EAGAIN"};

/// What strace writes about one invocation. A program that hangs is ended with it.
class Trace {
public:
    /// @param calls  the name of those that are written down, or "all".
    explicit Trace(const std::string& calls)
        : _file(_folder.File("trace")),
          _prefix{"/usr/bin/timeout", "--foreground", "--signal=KILL", "20"} {
        const Errors strace = {
            kStrace, "-qqq", "-o", _file, "-e", "signal=none", "-e", "trace=" + calls};
        _prefix.insert(_prefix.end(), strace.begin(), strace.end());
    }

    void Inject(const SystemCallFault& fault) {
        // The system answers brk() with no error, but with another address than was asked for.
        const std::string answer = fault.call.name == "brk" ? "retval=0" : "error=" + fault.error;
        _prefix.emplace_back("-e");
        _prefix.push_back("inject=" + fault.call.name + ":" + answer + ":when=" +
                          std::to_string(fault.call.occurrence) + (fault.isLasting ? "+" : ""));
        if (fault.isForChildren) {
            _prefix.emplace_back("-f");
        }
    }

    Intervention AsIntervention() const { return {.prefix = _prefix}; }

    std::vector<std::string> Lines() const {
        std::vector<std::string> lines;
        std::istringstream stream(ReadFile(_file));
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(line);
        }
        return lines;
    }

private:
    TemporaryDirectory _folder;
    std::string _file;
    std::vector<std::string> _prefix;
};

}  // namespace

std::string ReasonAgainstTracing() {
    const Result result = RunProcess({{kStrace, "-qqq", "-o", "/dev/null", "/bin/true"}});
    return result.status == 0 ? "" : "strace cannot trace even /bin/true: " + result.err;
}

SystemCalls CallsOf(const Scenario& scenario) {
    const Trace trace("all");
    RunScenario(scenario, trace.AsIntervention());
    SystemCalls calls;
    std::map<std::string, int> counts;
    bool isInMain = false;
    for (const std::string& line : trace.Lines()) {
        isInMain = isInMain || line.starts_with(kBeginningOfMain);
        const std::string name = line.substr(0, line.find('('));
        (isInMain ? calls.fromMainOn : calls.beforeMain).push_back({name, ++counts[name]});
    }
    if (!isInMain) {
        throw std::runtime_error("no '" + kBeginningOfMain + "' in what strace has written");
    }
    return calls;
}

const std::vector<std::string>& ErrorsOf(const std::string& name) {
    static const Errors none;
    if (std::find(kDoNotFail.begin(), kDoNotFail.end(), name) != kDoNotFail.end()) {
        return none;
    }
    const auto known = kErrors.find(name);
    return known == kErrors.end() ? kUsualErrors : known->second;
}

FaultedRun RunWithFault(const Scenario& scenario, const SystemCallFault& fault) {
    Trace trace(fault.call.name);
    trace.Inject(fault);
    FaultedRun run{RunScenario(scenario, trace.AsIntervention()), {}};
    for (const std::string& line : trace.Lines()) {
        if (line.ends_with("(INJECTED)")) {
            run.failed.push_back(line);
        }
    }
    return run;
}

}  // namespace Corvel::Testing
