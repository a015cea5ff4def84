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

/// What ends or stops a process from outside, and what ends a stop.
constexpr std::array kSignals =
    {SIGHUP, SIGINT, SIGQUIT, SIGUSR1, SIGUSR2, SIGPIPE, SIGALRM, SIGTERM, SIGTSTP, SIGCONT};

/// What the signal handler works on. It may call async-signal-safe functions only.
struct State {
    int descriptor = -1;
    termios saved = {};
    std::array<struct sigaction, kSignals.size()> previous = {};
    /// How many reasons there are to leave the echo on: every signal that is taking its effect is
    /// one, and the end of the silence is one.
    std::atomic<int> holds = 0;
};

constinit State state;

sigset_t SetOfSignals() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : kSignals) {
        sigaddset(&set, signal);
    }
    return set;
}

/// Signals wait for as long as this object lives, so that they find terminal and state in order.
class Uninterrupted {
public:
    Uninterrupted() {
        const sigset_t signals = SetOfSignals();
        pthread_sigmask(SIG_BLOCK, &signals, &_before);
    }
    Uninterrupted(const Uninterrupted&) = delete;
    Uninterrupted& operator=(const Uninterrupted&) = delete;
    ~Uninterrupted() { pthread_sigmask(SIG_SETMASK, &_before, nullptr); }

private:
    sigset_t _before;
};

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

/// Stops the process as long as the terminal belongs to another job, whose settings are none to go
/// by. This is a change of the terminal that changes nothing.
void AwaitForeground(int descriptor) {
    tcflow(descriptor, TCOON);
}

bool Silence() {
    termios silent = state.saved;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    return Apply(silent);
}

/// Whatever made the terminal echo meanwhile is what it goes back to.
void SilenceAgain() {
    termios settings = {};
    if (ReadSettings(state.descriptor, settings) && (settings.c_lflag & ECHO) != 0) {
        state.saved = settings;
    }
    Silence();
}

/// What is typed by now is thrown away only then: until then it may be part of the secret.
void EndSilence(bool throwTypedAway) {
    if (!InForeground()) {
        return;
    }
    Apply(state.saved);
    if (throwTypedAway) {
        tcflush(state.descriptor, TCIFLUSH);
    }
}

struct sigaction& PreviousAction(int signal) {
    std::size_t i = 0;
    while (kSignals[i] != signal) {
        ++i;
    }
    return state.previous[i];
}

/// Lets the signal, and those that came together with it, do what they did before, and comes back
/// when that is over, if it ever is, and the terminal is ours.
void TakeEffect(int signal, const sigset_t& maskBefore) {
    struct sigaction& previous = PreviousAction(signal);
    struct sigaction own;
    sigaction(signal, &previous, &own);
    raise(signal);

    sigset_t mask;
    pthread_sigmask(SIG_SETMASK, &maskBefore, &mask);
    AwaitForeground(state.descriptor);
    pthread_sigmask(SIG_SETMASK, &mask, nullptr);
    // The handler may have changed the action.
    sigaction(signal, &own, &previous);
}

extern "C" void OnSignal(int signal, siginfo_t* /*info*/, void* context) {
    const int savedErrno = errno;
    const bool hasHandler = PreviousAction(signal).sa_handler != SIG_DFL;
    ++state.holds;
    if (signal != SIGCONT || hasHandler) {
        EndSilence(!hasHandler);
        TakeEffect(signal, static_cast<const ucontext_t*>(context)->uc_sigmask);
    }
    if (--state.holds == 0 && InForeground()) {
        SilenceAgain();
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
    own.sa_mask = SetOfSignals();
    own.sa_sigaction = OnSignal;
    own.sa_flags =
        SA_SIGINFO | (previous.sa_handler == SIG_DFL ? SA_RESTART : previous.sa_flags & SA_RESTART);
    sigaction(signal, &own, nullptr);
}

}  // namespace

SilentTerminal::SilentTerminal(int descriptor) {
    AwaitForeground(descriptor);
    const Uninterrupted uninterrupted;
    _isTerminal = ReadSettings(descriptor, state.saved);
    if (!_isTerminal) {
        // Other reasons than these come from a terminal.
        _showsInput = errno != ENOTTY && errno != EINVAL && errno != EBADF;
        return;
    }
    state.descriptor = descriptor;
    for (const int signal : kSignals) {
        InstallHandler(signal);
    }
    _showsInput = !Silence();
}

SilentTerminal::~SilentTerminal() {
    if (!_isTerminal) {
        return;
    }
    const Uninterrupted uninterrupted;
    ++state.holds;
    Apply(state.saved);
    for (const int signal : kSignals) {
        sigaction(signal, &PreviousAction(signal), nullptr);
    }
    --state.holds;
}

}  // namespace Corvel::Platform
