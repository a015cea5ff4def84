#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace Corvel::Platform {

/// A child process from its start until somebody has waited for it.
///
/// Lifetime: a child that nobody has waited for is reaped by the destructor when it has ended, or
///           ends within kGraceMilliseconds; a longer-lived one is left alone, never waited for.
class ChildProcess final {
public:
    /// Long enough for a child that is just ending: a pipe is seen closed before its process is
    /// seen dead.
    static constexpr int kGraceMilliseconds = 100;

    ChildProcess() noexcept = default;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Starts the program that the first argument names, in the caller's environment.
    /// @param descriptors  those of the caller that become the child's 0, 1 and 2; it gets no more.
    /// @return a status code of NukuserCompat_ForkExec; an argument that holds a NUL, and would
    ///         reach the child cut short, is EINVAL.
    std::uint64_t Start(const std::vector<std::string>& arguments,
                        const std::array<int, 3>& descriptors);

    /// Waits for the end of the child.
    /// @param status  receives the status as waitpid reports it; untouched on failure.
    /// @return 0, or the errno value of the failure. Either way there is no more to wait for.
    int Wait(int& status) noexcept;

private:
    bool HasBeenReaped() const noexcept;

    int _pid = kNone;
    static constexpr int kNone = -1;
};

}  // namespace Corvel::Platform
