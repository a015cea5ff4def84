#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <iterator>
#include <string>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/platform/SilentTerminal.h"

namespace Corvel::Platform {
namespace {

constexpr std::array kEndings =
    {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGALRM, SIGUSR1, SIGUSR2};
constexpr std::array kSignals =
    {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGALRM, SIGUSR1, SIGUSR2, SIGTSTP, SIGCONT};

/// Both ends of a terminal that nobody is controlled by.
class Terminal {
public:
    Terminal() : _master(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        EXPECT_EQ(grantpt(_master), 0);
        EXPECT_EQ(unlockpt(_master), 0);
        _descriptor = open(ptsname(_master), O_RDWR | O_NOCTTY | O_CLOEXEC);
        EXPECT_NE(_descriptor, -1);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() {
        close(_descriptor);
        close(_master);
    }

    int Descriptor() const { return _descriptor; }
    void HangUp() { close(std::exchange(_master, -1)); }
    void Type(const std::string& keys) const {
        EXPECT_EQ(write(_master, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    termios Settings() const {
        termios settings = {};
        EXPECT_EQ(tcgetattr(_descriptor, &settings), 0);
        return settings;
    }
    bool Echoes() const { return (Settings().c_lflag & ECHO) != 0; }

private:
    int _master;
    int _descriptor = -1;
};

bool SameSettings(const termios& a, const termios& b) {
    return a.c_iflag == b.c_iflag && a.c_oflag == b.c_oflag && a.c_cflag == b.c_cflag &&
           a.c_lflag == b.c_lflag && std::equal(std::begin(a.c_cc), std::end(a.c_cc), b.c_cc) &&
           cfgetispeed(&a) == cfgetispeed(&b) && cfgetospeed(&a) == cfgetospeed(&b);
}

/// What a handler of the program's own looks at, and what it saw.
int watchedDescriptor = -1;
std::atomic<int> calls = 0;
std::atomic<bool> echoedAtCall = false;
std::atomic<bool> readReturned = false;

extern "C" void Watch(int /*signal*/) {
    ++calls;
    termios settings;
    echoedAtCall = tcgetattr(watchedDescriptor, &settings) == 0 && (settings.c_lflag & ECHO) != 0;
}

std::atomic<int> callsDuringTheOuterHandler = 0;

/// Calls Watch by a signal of its own, and looks at the terminal when that is over.
extern "C" void InterruptItself(int signal) {
    raise(SIGINT);
    callsDuringTheOuterHandler = calls.load();
    Watch(signal);
}

extern "C" void IgnoreFromNowOn(int signal) {
    ++calls;
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    sigaction(signal, &ignore, nullptr);
}

/// An action for one signal, for as long as this object lives.
class ActionScope {
public:
    ActionScope(int signal, void (*handler)(int), int flags = SA_RESTART) : _signal(signal) {
        calls = 0;
        struct sigaction action = {};
        action.sa_handler = handler;
        action.sa_flags = flags;
        sigaction(signal, &action, &_before);
    }
    ActionScope(const ActionScope&) = delete;
    ActionScope& operator=(const ActionScope&) = delete;
    ~ActionScope() { sigaction(_signal, &_before, nullptr); }

private:
    int _signal;
    struct sigaction _before;
};

auto HandlerOf(int signal) {
    struct sigaction action;
    sigaction(signal, nullptr, &action);
    return action.sa_handler;
}

TEST(SilentTerminal, SwitchesNothingButTheEchoOffAndPutsAllBack) {
    const Terminal terminal;
    const termios before = terminal.Settings();
    {
        const SilentTerminal silence(terminal.Descriptor());
        EXPECT_TRUE(silence.IsTerminal());
        EXPECT_FALSE(silence.ShowsInput());
        termios expected = before;
        expected.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        const termios during = terminal.Settings();
        EXPECT_TRUE(SameSettings(during, expected));
    }
    const termios after = terminal.Settings();
    EXPECT_TRUE(SameSettings(after, before));
}

TEST(SilentTerminal, LeavesATerminalSilentThatWas) {
    const Terminal terminal;
    termios settings = terminal.Settings();
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    ASSERT_EQ(tcsetattr(terminal.Descriptor(), TCSANOW, &settings), 0);
    { const SilentTerminal silence(terminal.Descriptor()); }
    EXPECT_FALSE(terminal.Echoes());
}

TEST(SilentTerminal, DoesNothingToWhatIsNoTerminal) {
    std::array<int, 2> ends;
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    {
        const ActionScope action(SIGTERM, Watch);
        const SilentTerminal onPipe(ends[0]);
        const SilentTerminal onNothing(-1);
        EXPECT_EQ(HandlerOf(SIGTERM), Watch);
        for (const SilentTerminal* none : {&onPipe, &onNothing}) {
            EXPECT_FALSE(none->IsTerminal());
            EXPECT_FALSE(none->ShowsInput());
        }
    }
    close(ends[0]);
    close(ends[1]);
}

TEST(SilentTerminal, TellsOfATerminalThatCannotBeSilenced) {
    Terminal terminal;
    terminal.HangUp();
    const ActionScope action(SIGTERM, Watch);
    const SilentTerminal silence(terminal.Descriptor());
    EXPECT_TRUE(silence.ShowsInput());
    EXPECT_EQ(HandlerOf(SIGTERM), Watch);
}

TEST(SilentTerminal, PutsTheSignalHandlersBack) {
    const Terminal terminal;
    for (const int signal : kSignals) {
        for (auto* const handler : {Watch, SIG_DFL}) {
            const ActionScope action(signal, handler);
            { const SilentTerminal silence(terminal.Descriptor()); }
            EXPECT_EQ(HandlerOf(signal), handler) << signal;
        }
    }
}

TEST(SilentTerminal, LeavesAnIgnoredSignalIgnored) {
    const Terminal terminal;
    const ActionScope action(SIGHUP, SIG_IGN);
    const SilentTerminal silence(terminal.Descriptor());
    EXPECT_EQ(HandlerOf(SIGHUP), SIG_IGN);
    raise(SIGHUP);
    EXPECT_FALSE(terminal.Echoes());
}

TEST(SilentTerminal, EchoesWhileAHandlerOfTheProgramRunsAndIsSilentAfterwards) {
    const Terminal terminal;
    watchedDescriptor = terminal.Descriptor();
    for (const int signal : kSignals) {
        const ActionScope action(signal, Watch);
        const SilentTerminal silence(terminal.Descriptor());
        errno = ENOTDIR;
        raise(signal);
        raise(signal);
        EXPECT_EQ(errno, ENOTDIR);
        EXPECT_EQ(calls, 2) << signal;
        EXPECT_TRUE(echoedAtCall) << signal;
        EXPECT_FALSE(terminal.Echoes()) << signal;
    }
    EXPECT_TRUE(terminal.Echoes());
}

TEST(SilentTerminal, HandlersOfTheProgramInterruptEachOtherAsEver) {
    const Terminal terminal;
    watchedDescriptor = terminal.Descriptor();
    const ActionScope inner(SIGINT, Watch);
    const ActionScope outer(SIGTERM, InterruptItself);
    const SilentTerminal silence(terminal.Descriptor());
    raise(SIGTERM);
    EXPECT_EQ(callsDuringTheOuterHandler, 1);
    EXPECT_EQ(calls, 2);
    EXPECT_TRUE(echoedAtCall) << "when the inner one was over";
    EXPECT_FALSE(terminal.Echoes());
}

TEST(SilentTerminal, KeepsTheActionThatAHandlerChose) {
    const Terminal terminal;
    const ActionScope action(SIGTERM, IgnoreFromNowOn);
    {
        const SilentTerminal silence(terminal.Descriptor());
        raise(SIGTERM);
        raise(SIGTERM);
        EXPECT_EQ(calls, 1);
        EXPECT_FALSE(terminal.Echoes());
    }
    EXPECT_EQ(HandlerOf(SIGTERM), SIG_IGN);
}

/// Reads the terminal in this thread while another one sends it SIGINT until `stop` holds, and then
/// types a line.
template <typename Condition>
ssize_t ReadUnderSignals(const Terminal& terminal, Condition stop) {
    const pthread_t reader = pthread_self();
    std::thread other([&] {
        while (!stop()) {
            pthread_kill(reader, SIGINT);
            std::this_thread::yield();
        }
        terminal.Type("word\n");
    });
    std::array<char, 16> line;
    const ssize_t count = read(terminal.Descriptor(), line.data(), line.size());
    readReturned = true;
    other.join();
    return count;
}

TEST(SilentTerminal, ReadingGoesOnAfterAHandlerThatRestartsCalls) {
    const Terminal terminal;
    watchedDescriptor = terminal.Descriptor();
    const ActionScope action(SIGINT, Watch, SA_RESTART);
    const SilentTerminal silence(terminal.Descriptor());
    EXPECT_EQ(ReadUnderSignals(terminal, [] { return calls >= 100; }), 5);
}

TEST(SilentTerminal, ReadingEndsAfterAHandlerThatInterruptsCalls) {
    const Terminal terminal;
    watchedDescriptor = terminal.Descriptor();
    readReturned = false;
    const ActionScope action(SIGINT, Watch, 0);
    const SilentTerminal silence(terminal.Descriptor());
    EXPECT_EQ(ReadUnderSignals(terminal, [] { return readReturned.load(); }), -1);
}

TEST(SilentTerminal, KeepsWhatWasTypedWhenTheProgramHandlesTheSignal) {
    const Terminal terminal;
    watchedDescriptor = terminal.Descriptor();
    const ActionScope action(SIGTERM, Watch);
    const SilentTerminal silence(terminal.Descriptor());
    terminal.Type("se");
    raise(SIGTERM);
    terminal.Type("cret\n");
    std::array<char, 16> line;
    EXPECT_EQ(read(terminal.Descriptor(), line.data(), line.size()), 7);
    EXPECT_EQ(std::string(line.data(), 7), "secret\n");
}

/// In a process of its own, which the signal ends.
TEST(SilentTerminal, EndsByTheSignalWithTheSettingsBack) {
    for (const int signal : kEndings) {
        const Terminal terminal;
        const pid_t child = fork();
        if (child == 0) {
            const rlimit noCoreFile = {0, 0};
            setrlimit(RLIMIT_CORE, &noCoreFile);
            const ActionScope action(signal, SIG_DFL);
            const SilentTerminal silence(terminal.Descriptor());
            terminal.Type("secret\n");
            raise(signal);
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << signal;
        EXPECT_EQ(WTERMSIG(status), signal);
        EXPECT_TRUE(terminal.Echoes()) << signal;
        ASSERT_EQ(fcntl(terminal.Descriptor(), F_SETFL, O_NONBLOCK), 0);
        char c = 0;
        EXPECT_EQ(read(terminal.Descriptor(), &c, 1), -1) << "the secret is still there";
    }
}

}  // namespace
}  // namespace Corvel::Platform
