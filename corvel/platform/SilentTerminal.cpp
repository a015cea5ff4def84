#include "corvel/platform/SilentTerminal.h"

#include <errno.h>
#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstddef>

namespace Corvel::Platform {

namespace {

constexpr std::array<int, 5> kSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};

/// What the signal handler works on. It may call async-signal-safe functions only.
struct State {
    int descriptor = -1;
    termios saved = {};
    termios silent = {};
    std::array<struct sigaction, kSignals.size()> previous = {};
    /// How many reasons there are to leave the echo on: every signal that is taking its effect is
    /// one, and the end of the silence is one.
    std::atomic<int> holds = 0;
};

constinit State state;

/// @return whether the terminal answers; false when this is none.
bool ReadSettings(int descriptor, termios& settings) {
    while (tcgetattr(descriptor, &settings) == -1) {
        if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

/// What fails is tried again a few times: much is lost where the echo stays off.
bool Apply(const termios& settings) {
    for (int attemptsLeft = 3; attemptsLeft > 0;) {
        if (tcsetattr(state.descriptor, TCSANOW, &settings) == 0) {
            return true;
        }
        if (errno != EINTR) {
            --attemptsLeft;
        }
    }
    return false;
}

/// Whether the terminal is ours to change. In the background it belongs to the foreground job, and
/// an attempt would stop the process. A terminal that does not control us has no such jobs.
bool InForeground() {
    const pid_t foreground = tcgetpgrp(state.descriptor);
    return foreground == -1 || foreground == getpgrp();
}

struct sigaction& PreviousAction(int signal) {
    std::size_t i = 0;
    while (kSignals[i] != signal) {
        ++i;
    }
    return state.previous[i];
}

/// Lets the signal do what it did before, and comes back when that is over, if it ever is.
void TakeEffect(int signal, struct sigaction& previous) {
    sigset_t only;
    sigset_t mask;
    sigemptyset(&only);
    sigaddset(&only, signal);

    struct sigaction own;
    sigaction(signal, &previous, &own);
    raise(signal);
    pthread_sigmask(SIG_UNBLOCK, &only, &mask);
    pthread_sigmask(SIG_SETMASK, &mask, nullptr);
    // The handler may have changed the action.
    sigaction(signal, &own, &previous);
}

extern "C" void OnSignal(int signal) {
    const int savedErrno = errno;
    struct sigaction& previous = PreviousAction(signal);
    ++state.holds;
    if (InForeground()) {
        if (previous.sa_handler == SIG_DFL) {
            tcflush(state.descriptor, TCIFLUSH);
        }
        Apply(state.saved);
    }
    TakeEffect(signal, previous);
    if (--state.holds == 0) {
        Apply(state.silent);
    }
    errno = savedErrno;
}

/// A system call that the signal interrupts goes on afterwards, unless the program's own handler
/// was set up to interrupt it.
void InstallHandler(int signal) {
    struct sigaction& previous = PreviousAction(signal);
    sigaction(signal, nullptr, &previous);
    if (previous.sa_handler == SIG_IGN) {
        return;
    }
    struct sigaction own = {};
    sigemptyset(&own.sa_mask);
    own.sa_handler = OnSignal;
    own.sa_flags = previous.sa_handler == SIG_DFL ? SA_RESTART : previous.sa_flags & SA_RESTART;
    sigaction(signal, &own, nullptr);
}

}  // namespace

SilentTerminal::SilentTerminal(int descriptor)
    : _isTerminal(ReadSettings(descriptor, state.saved)), _showsInput(false) {
    if (!_isTerminal) {
        // Other reasons than these come from a terminal.
        _showsInput = errno != ENOTTY && errno != EINVAL && errno != EBADF;
        return;
    }
    state.descriptor = descriptor;
    state.silent = state.saved;
    state.silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    for (const int signal : kSignals) {
        InstallHandler(signal);
    }
    _showsInput = !Apply(state.silent);
}

SilentTerminal::~SilentTerminal() {
    if (!_isTerminal) {
        return;
    }
    ++state.holds;
    Apply(state.saved);
    for (const int signal : kSignals) {
        sigaction(signal, &PreviousAction(signal), nullptr);
    }
    --state.holds;
}

}  // namespace Corvel::Platform
