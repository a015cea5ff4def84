#pragma once

#include <sys/types.h>

#include <optional>

namespace Corvel::Testing {

/// A process that is taken from one end of a system call to the next until it is let go: what
/// happens to it in between happens exactly there. Signals reach it as ever, and it can be stopped and
/// continued.
///
/// Ownership: a process that has not been let go is killed.
/// Failures:  std::system_error where the process cannot be traced.
class SystemCallSteps {
public:
    /// Where the process waits: it has entered a system call, or is about to return from it.
    struct Step {
        bool isReturn;
        unsigned long call;
        unsigned long first;
        unsigned long second;
    };

    explicit SystemCallSteps(pid_t process);
    SystemCallSteps(const SystemCallSteps&) = delete;
    SystemCallSteps& operator=(const SystemCallSteps&) = delete;
    ~SystemCallSteps();

    /// Lets it go on to the next step.
    /// @return nothing when it has ended.
    std::optional<Step> Next();
    /// From now on it runs by itself, unless it has ended.
    void LetGo();

private:
    void Resume(int how, int signal) const;
    int Wait() const;

    pid_t _process;
    bool _isOurs = true;
    Step _current = {};
};

}  // namespace Corvel::Testing
