#pragma once

#include <sys/types.h>
#include <termios.h>

#include <string>
#include <vector>

#include "tests/support/ProcessRunner.h"

namespace Corvel::Testing {

/// A program that runs in the foreground of a terminal of its own, under a small job-control shell
/// that takes the terminal back whenever the program stops.
///
/// Ownership: ends the program, where it still runs, and gives the terminal up.
/// Failures:  std::system_error, and std::runtime_error for anything that has not happened after
///            half a minute; both fail the test.
class TerminalJob {
public:
    /// Whether the program begins at once, or is held until Release(), when its process is there
    /// already.
    enum class Start { Now, Held };

    /// @param arguments  the argument vector; the first one is the program's path.
    explicit TerminalJob(const std::vector<std::string>& arguments,
                         const std::vector<std::string>& environment = FixedEnvironment(),
                         Start start = Start::Now);
    TerminalJob(const TerminalJob&) = delete;
    TerminalJob& operator=(const TerminalJob&) = delete;
    ~TerminalJob();

    /// Presses these keys.
    void Type(const std::string& keys);
    /// @return what has appeared on the screen since the last reading, up to the end of this text.
    ///         A line end appears as "\r\n".
    std::string ReadUntil(const std::string& text);
    /// @return what has appeared since the last reading, up to the end of the program.
    std::string ReadToEnd();
    /// Whether the terminal shows what is typed.
    bool Echoes() const;
    termios Settings() const;
    void SetSettings(const termios& settings);
    /// Takes what has been typed and not read by anybody yet, unfinished lines included.
    std::string TakeUnread();

    pid_t Process() const { return _program; }
    void Release();
    void Signal(int signal);
    /// Waits until the program stops or ends.
    /// @return "stopped ", "killed " or "exited " with the signal or the exit status.
    std::string Wait();
    /// Lets the stopped program go on, and gives it the terminal.
    void ContinueInForeground();
    /// Lets the stopped program go on without the terminal.
    void ContinueInBackground();

private:
    std::string ReadLineOfShell();
    bool ReadSome();

    int _terminal = -1;
    int _reports = -1;
    int _orders = -1;
    pid_t _shell = -1;
    pid_t _program = -1;
    bool _ended = false;
    std::string _shown;
};

}  // namespace Corvel::Testing
