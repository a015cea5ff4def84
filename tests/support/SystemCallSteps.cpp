#include "tests/support/SystemCallSteps.h"

#include <errno.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/wait.h>

#include <system_error>

namespace Corvel::Testing {

namespace {

constexpr int kSystemCallStop = SIGTRAP | 0x80;

void Require(bool done, const char* what) {
    if (!done) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

}  // namespace

SystemCallSteps::SystemCallSteps(pid_t process) : _process(process) {
    Require(ptrace(PTRACE_SEIZE, _process, 0, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL) == 0,
            "PTRACE_SEIZE");
    Require(ptrace(PTRACE_INTERRUPT, _process, 0, 0) == 0, "PTRACE_INTERRUPT");
    Wait();
}

SystemCallSteps::~SystemCallSteps() {
    if (_isOurs) {
        kill(_process, SIGKILL);
        waitpid(_process, nullptr, __WALL);
    }
}

std::optional<SystemCallSteps::Step> SystemCallSteps::Next() {
    Resume(PTRACE_SYSCALL, 0);
    for (int status = 0; (status = Wait()) >> 8 != kSystemCallStop;) {
        if (!WIFSTOPPED(status)) {
            _isOurs = false;
            return std::nullopt;
        }
        const bool isEvent = status >> 16 == PTRACE_EVENT_STOP;
        const bool isStopped = isEvent && WSTOPSIG(status) != SIGTRAP;
        Resume(isStopped ? PTRACE_LISTEN : PTRACE_SYSCALL, isEvent ? 0 : WSTOPSIG(status));
    }
    __ptrace_syscall_info info = {};
    Require(ptrace(PTRACE_GET_SYSCALL_INFO, _process, sizeof info, &info) > 0,
            "PTRACE_GET_SYSCALL_INFO");
    _current.isReturn = info.op == PTRACE_SYSCALL_INFO_EXIT;
    if (!_current.isReturn) {
        _current.call = info.entry.nr;
        _current.first = info.entry.args[0];
        _current.second = info.entry.args[1];
    }
    return _current;
}

void SystemCallSteps::Resume(int how, int signal) const {
    Require(ptrace(static_cast<__ptrace_request>(how), _process, 0, signal) == 0, "ptrace");
}

int SystemCallSteps::Wait() const {
    int status = 0;
    Require(waitpid(_process, &status, __WALL) == _process, "waitpid");
    return status;
}

void SystemCallSteps::LetGo() {
    if (_isOurs) {
        Resume(PTRACE_DETACH, 0);
        _isOurs = false;
    }
}

}  // namespace Corvel::Testing
