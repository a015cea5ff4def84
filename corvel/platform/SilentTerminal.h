#pragma once

namespace Corvel::Platform {

/// A terminal that does not show what is typed, for as long as this object lives. On anything else
/// than a terminal it does nothing.
///
/// The settings are put back by the destructor, and before INT, TERM, HUP, QUIT or TSTP take their
/// effect, which is the one that they had before. Where that effect ends, because the process goes
/// on after a stop or because a handler of the program's own returns, the terminal falls silent
/// again. What was typed of a secret is thrown away when a signal ends or stops the process, so that
/// it never turns up in the next program that reads the terminal.
///
/// Ownership: the saved settings and the five signal handlers that were there; one object at a time.
/// Failures:  a terminal that cannot be silenced stays as it is; ShowsInput() tells.
class SilentTerminal {
public:
    explicit SilentTerminal(int descriptor);
    SilentTerminal(const SilentTerminal&) = delete;
    SilentTerminal& operator=(const SilentTerminal&) = delete;
    ~SilentTerminal();

    bool IsTerminal() const { return _isTerminal; }
    /// Whether what is typed can be seen nonetheless.
    bool ShowsInput() const { return _showsInput; }

private:
    bool _isTerminal;
    bool _showsInput;
};

}  // namespace Corvel::Platform
