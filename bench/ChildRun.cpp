#include "bench/ChildRun.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <sstream>

namespace Corvel::Bench {

namespace {

/// posix_spawn's list of descriptors for the child.
class Actions {
public:
    Actions() { posix_spawn_file_actions_init(&_actions); }
    ~Actions() { posix_spawn_file_actions_destroy(&_actions); }
    Actions(const Actions&) = delete;
    Actions& operator=(const Actions&) = delete;

    posix_spawn_file_actions_t* Get() { return &_actions; }

private:
    posix_spawn_file_actions_t _actions;
};

[[noreturn]] void Fail(const std::string& what, const char* program, int number) {
    std::cerr << what << ' ' << program << ": " << number << '\n';
    std::exit(EXIT_FAILURE);
}

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

std::vector<char*> Pointers(const std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) {
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): posix_spawn changes no argument
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

pid_t Start(const std::vector<std::string>& arguments, Actions& actions) {
    const std::vector<char*> pointers = Pointers(arguments);
    pid_t child = 0;
    const int error =
        posix_spawnp(&child, pointers[0], actions.Get(), nullptr, pointers.data(), environ);
    if (error != 0) {
        Fail("cannot start", pointers[0], error);
    }
    return child;
}

rusage Await(pid_t child, const std::string& program, int expectedExitStatus) {
    int status = 0;
    rusage usage = {};
    while (::wait4(child, &status, 0, &usage) == -1 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != expectedExitStatus) {
        Fail("bad wait status of", program.c_str(), status);
    }
    return usage;
}

/// Runs a child that reads from one pipe, which has nothing for it, and writes to another.
/// @return what it wrote.
std::string RunBetweenPipes(const std::vector<std::string>& arguments) {
    std::array<int, 2> input = {};
    std::array<int, 2> output = {};
    if (::pipe2(input.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0) {
        Fail("no pipe for", arguments[0].c_str(), errno);
    }
    Actions actions;
    posix_spawn_file_actions_adddup2(actions.Get(), input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(actions.Get(), output[1], STDOUT_FILENO);
    const pid_t child = Start(arguments, actions);
    ::close(input[0]);
    ::close(input[1]);
    ::close(output[1]);
    std::array<char, 65536> buffer;
    std::string text;
    ssize_t got = 0;
    while ((got = ::read(output[0], buffer.data(), buffer.size())) > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(got));
    }
    ::close(output[0]);
    Await(child, arguments[0], EXIT_SUCCESS);
    return text;
}

}  // namespace

ChildRun RunChild(const std::vector<std::string>& arguments,
                  int expectedExitStatus,
                  const char* inputPath) {
    Actions actions;
    posix_spawn_file_actions_addopen(actions.Get(), STDIN_FILENO, inputPath, O_RDONLY, 0);
    posix_spawn_file_actions_addopen(actions.Get(), STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(actions.Get(), STDERR_FILENO, "/dev/null", O_WRONLY, 0);

    const auto start = std::chrono::steady_clock::now();
    const rusage usage = Await(Start(arguments, actions), arguments[0], expectedExitStatus);
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    return {wall.count(), Seconds(usage.ru_utime) + Seconds(usage.ru_stime)};
}

ChildRun RunTellingChild(const std::vector<std::string>& arguments) {
    ChildRun told;
    std::istringstream text(RunBetweenPipes(arguments));
    if (!(text >> told.wallSeconds >> told.cpuSeconds)) {
        Fail("no times from", arguments[0].c_str(), 0);
    }
    return told;
}

std::string SpawnShell(const char* command) {
    return RunBetweenPipes({"/bin/sh", "-c", command});
}

}  // namespace Corvel::Bench
