#pragma once

namespace Corvel::Platform {

/// A terminal that does not show what is typed, for as long as this object lives. On anything else
/// than a terminal it does nothing. A process in the background is stopped until it gets the terminal.
///
/// The settings are put back by the destructor, and before a signal that ends or stops processes takes
/// its effect, which is the one that it had before. Where that effect ends, because the process goes
/// on after a stop or because a handler of the program's own returns, the terminal falls silent
/// again, and what was set meanwhile is what it goes back to in the end. Of signals that come together
/// each takes its effect as if there were no handler here. What was typed of a secret is thrown away
/// when a signal ends or stops the process, so that it never turns up in the next program that reads
/// the terminal.
///
/// Ownership: the saved settings and the signal handlers that were there; one object at a time.
/// Failures:  a terminal that cannot be silenced stays as it is; ShowsInput() tells. KILL and STOP leave
///            it silent; after a stop it falls silent again even if somebody made it echo.
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
    bool _showsInput = false;
};

}  // namespace Corvel::Platform
