#include "tests/support/TerminalJob.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace Corvel::Testing {

namespace {

constexpr int kPatienceInMilliseconds = 30'000;
constexpr int kSignalCount = 32;

constexpr char kForeground = 'f';
constexpr char kBackground = 'b';
constexpr char kRelease = 'r';

int Checked(int result, const char* what) {
    if (result == -1) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return result;
}

int OpenTerminal() {
    const int terminal = Checked(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC), "no pseudo-terminal");
    Checked(grantpt(terminal), "grantpt");
    Checked(unlockpt(terminal), "unlockpt");
    return terminal;
}

std::string NameOfOtherEnd(int terminal) {
    std::array<char, 64> name;
    if (ptsname_r(terminal, name.data(), name.size()) != 0) {
        throw std::runtime_error("ptsname_r");
    }
    return name.data();
}

std::vector<char*> PointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts) {
        pointers.push_back(const_cast<char*>(text.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

void AwaitInput(int descriptor) {
    pollfd wanted = {descriptor, POLLIN, 0};
    if (Checked(poll(&wanted, 1, kPatienceInMilliseconds), "poll") == 0) {
        throw std::runtime_error("nothing happened");
    }
}

void WriteAll(int descriptor, const std::string& text) {
    for (std::size_t written = 0; written < text.size();) {
        const ssize_t count = write(descriptor, text.data() + written, text.size() - written);
        Checked(static_cast<int>(count), "write");
        written += static_cast<std::size_t>(count);
    }
}

/// Everything that happens in the new processes. It calls what may be called after a fork only.
struct Shell {
    const char* terminalName;
    int reports;
    int orders;
    char* const* arguments;
    char* const* environment;
    bool holdsProgram;

    [[noreturn]] void Run() const {
        setsid();
        const int terminal = open(terminalName, O_RDWR | O_CLOEXEC);
        signal(SIGTTOU, SIG_IGN);
        signal(SIGHUP, SIG_IGN);
        const pid_t program = fork();
        if (program == 0) {
            Become(terminal);
        }
        Report("started", program);
        int status = 0;
        while (waitpid(program, &status, WUNTRACED) == program && WIFSTOPPED(status)) {
            tcsetpgrp(terminal, getpgrp());
            Report("stopped", WSTOPSIG(status));
            FollowOrder(terminal, program);
        }
        // The screen ends here; the settings last as long as this process has the terminal.
        close(terminal);
        WIFEXITED(status) ? Report("exited", WEXITSTATUS(status))
                          : Report("killed", WTERMSIG(status));
        for (;;) {
            pause();
        }
    }

    [[noreturn]] void Become(int terminal) const {
        setpgid(0, 0);
        tcsetpgrp(terminal, getpid());
        if (holdsProgram) {
            char order = 0;
            static_cast<void>(read(orders, &order, 1));
        }
        for (int i = 1; i < kSignalCount; ++i) {
            signal(i, SIG_DFL);
        }
        for (int i = 0; i < 3; ++i) {
            dup2(terminal, i);
        }
        execve(arguments[0], arguments, environment);
        _exit(127);
    }

    void Report(const char* event, int number) const { dprintf(reports, "%s %d\n", event, number); }

    void FollowOrder(int terminal, pid_t program) const {
        char order = 0;
        if (read(orders, &order, 1) != 1) {
            _exit(0);
        }
        if (order == kForeground) {
            tcsetpgrp(terminal, program);
        }
        kill(-program, SIGCONT);
    }
};

}  // namespace

TerminalJob::TerminalJob(const std::vector<std::string>& arguments,
                         const std::vector<std::string>& environment,
                         Start start)
    : _terminal(OpenTerminal()) {
    const std::string name = NameOfOtherEnd(_terminal);
    std::array<int, 2> reports;
    std::array<int, 2> orders;
    Checked(pipe2(reports.data(), O_CLOEXEC), "pipe2");
    Checked(pipe2(orders.data(), O_CLOEXEC), "pipe2");
    const std::vector<char*> argv = PointersTo(arguments);
    const std::vector<char*> envp = PointersTo(environment);
    _shell = Checked(fork(), "fork");
    if (_shell == 0) {
        close(_terminal);
        close(orders[1]);
        Shell{.terminalName = name.c_str(),
              .reports = reports[1],
              .orders = orders[0],
              .arguments = argv.data(),
              .environment = envp.data(),
              .holdsProgram = start == Start::Held}
            .Run();
    }
    close(reports[1]);
    close(orders[0]);
    _reports = reports[0];
    _orders = orders[1];
    _program = std::stoi(ReadLineOfShell().substr(std::string("started ").size()));
}

TerminalJob::~TerminalJob() {
    if (!_ended) {
        kill(_program, SIGKILL);
    }
    kill(_shell, SIGKILL);
    waitpid(_shell, nullptr, 0);
    close(_orders);
    close(_reports);
    close(_terminal);
}

void TerminalJob::Type(const std::string& keys) {
    WriteAll(_terminal, keys);
}

std::string TerminalJob::ReadUntil(const std::string& text) {
    std::size_t found = 0;
    while ((found = _shown.find(text)) == std::string::npos) {
        if (!ReadSome()) {
            throw std::runtime_error("the program ended after '" + _shown + "'");
        }
    }
    std::string shown = _shown.substr(0, found + text.size());
    _shown.erase(0, shown.size());
    return shown;
}

std::string TerminalJob::ReadToEnd() {
    while (ReadSome()) {
    }
    return std::exchange(_shown, {});
}

bool TerminalJob::Echoes() const {
    return (Settings().c_lflag & ECHO) != 0;
}

termios TerminalJob::Settings() const {
    termios settings;
    Checked(tcgetattr(_terminal, &settings), "tcgetattr");
    return settings;
}

void TerminalJob::SetSettings(const termios& settings) {
    Checked(tcsetattr(_terminal, TCSANOW, &settings), "tcsetattr");
}

std::string TerminalJob::TakeUnread() {
    const int keyboard =
        Checked(open(NameOfOtherEnd(_terminal).c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK),
                "the other end of the terminal");
    const termios before = Settings();
    termios byByte = before;
    byByte.c_lflag &= ~static_cast<tcflag_t>(ICANON);
    SetSettings(byByte);
    std::array<char, 4096> unread;
    const ssize_t count = read(keyboard, unread.data(), unread.size());
    SetSettings(before);
    close(keyboard);
    return {unread.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
}

void TerminalJob::Release() {
    WriteAll(_orders, {kRelease});
}

void TerminalJob::Signal(int signal) {
    Checked(kill(_program, signal), "kill");
}

std::string TerminalJob::Wait() {
    std::string event = ReadLineOfShell();
    _ended = event.rfind("stopped ", 0) != 0;
    return event;
}

void TerminalJob::ContinueInForeground() {
    WriteAll(_orders, {kForeground});
}

void TerminalJob::ContinueInBackground() {
    WriteAll(_orders, {kBackground});
}

std::string TerminalJob::ReadLineOfShell() {
    std::string line;
    for (char c = 0;;) {
        AwaitInput(_reports);
        if (Checked(static_cast<int>(read(_reports, &c, 1)), "read") == 0) {
            throw std::runtime_error("the shell has gone");
        }
        if (c == '\n') {
            return line;
        }
        line += c;
    }
}

/// @return false at the end: nobody has the terminal open any more.
bool TerminalJob::ReadSome() {
    AwaitInput(_terminal);
    std::array<char, 4096> buffer;
    const ssize_t count = read(_terminal, buffer.data(), buffer.size());
    if (count == -1 && errno == EIO) {
        return false;
    }
    Checked(static_cast<int>(count), "read");
    _shown.append(buffer.data(), static_cast<std::size_t>(count));
    return count > 0;
}

}  // namespace Corvel::Testing
