#include "tests/guard/Shells.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <ostream>
#include <string_view>
#include <system_error>

#include "corvel/platform/FileDescriptor.h"

namespace Corvel::Testing {

namespace {

/// Where canaries and line numbers are reported: low enough for every shell to name it.
constexpr int kCanaryReport = 9;
constexpr int kNumberReport = 8;

/// What fits into one argument of a program, with room to spare.
constexpr std::size_t kLongestScript = 100000;

/// The programs that lines use besides what is built in.
constexpr std::array<std::string_view, 9> kTools =
    {"awk", "cat", "env", "printenv", "printf", "sed", "timeout", "true", "xargs"};

std::vector<char*> Pointers(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts) {
        pointers.push_back(const_cast<char*>(text.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// The descriptors of a shell, and where it starts.
class Surroundings {
public:
    Surroundings(const std::string& directory, int report, bool printsToReport) {
        posix_spawnattr_init(&_attributes);
        posix_spawnattr_setflags(&_attributes, POSIX_SPAWN_SETPGROUP);
        posix_spawn_file_actions_init(&_actions);
        posix_spawn_file_actions_addchdir_np(&_actions, directory.c_str());
        posix_spawn_file_actions_adddup2(&_actions, report, kCanaryReport);
        posix_spawn_file_actions_adddup2(&_actions, report, kNumberReport);
        posix_spawn_file_actions_addopen(&_actions, 0, "/dev/null", O_RDONLY, 0);
        if (printsToReport) {
            posix_spawn_file_actions_adddup2(&_actions, report, 1);
        } else {
            posix_spawn_file_actions_addopen(&_actions, 1, "/dev/null", O_WRONLY, 0);
        }
        posix_spawn_file_actions_addopen(&_actions, 2, "/dev/null", O_WRONLY, 0);
    }
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;
    ~Surroundings() {
        posix_spawn_file_actions_destroy(&_actions);
        posix_spawnattr_destroy(&_attributes);
    }

    const posix_spawn_file_actions_t* Actions() const { return &_actions; }
    /// A process group of its own, which ends as a whole.
    const posix_spawnattr_t* Attributes() const { return &_attributes; }

private:
    posix_spawn_file_actions_t _actions{};
    posix_spawnattr_t _attributes{};
};

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos;
         end = text.find('\n', begin)) {
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

/// Reads until nobody can write any more.
/// @return false when nothing comes for long.
bool ReadReport(int report, std::string& text) {
    constexpr int kLongMilliseconds = 10000;
    std::array<char, 4096> buffer{};
    while (true) {
        pollfd ready{report, POLLIN, 0};
        if (poll(&ready, 1, kLongMilliseconds) == 0) {
            return false;
        }
        const ssize_t size = read(report, buffer.data(), buffer.size());
        if (size <= 0) {
            return true;
        }
        text.append(buffer.data(), static_cast<std::size_t>(size));
    }
}

std::vector<std::string> CanariesIn(const std::vector<std::string>& report) {
    std::vector<std::string> names;
    for (const std::string& line : report) {
        if (!line.empty() && line.front() == '!') {
            names.push_back(line.substr(1));
        }
    }
    return names;
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Shell& shell) {
    return stream << shell.name;
}

const std::vector<Shell>& Shells() {
    static const std::vector<Shell> shells = {
        {"dash", "/bin/dash", {"dash"}},
        {"bash", "/bin/bash", {"bash"}},
        {"bash_as_sh", "/bin/bash", {"sh"}},
        {"busybox_sh", "/bin/busybox", {"busybox", "sh"}},
        {"mksh", "/bin/mksh", {"mksh"}},
    };
    return shells;
}

Canaries::Canaries(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        std::filesystem::create_symlink(CORVEL_CANARY, _directory.File(name));
    }
}

Aviary::Aviary(const Shell& shell, const Canaries& canaries) : _shell(shell) {
    namespace fs = std::filesystem;
    const fs::path tools = _directory.File("tools");
    fs::create_directory(tools);
    fs::create_directory(_directory.File("work"));
    for (const std::string_view tool : kTools) {
        fs::create_symlink(fs::path("/usr/bin") / tool, tools / tool);
    }
    fs::create_symlink(shell.path, tools / "sh");
    const std::string path = canaries.Folder() + ":" + tools.string();
    _pathSize = path.size();
    _environment = {"PATH=" + path, "LANG=C.UTF-8"};
}

std::string Aviary::Start(const std::string& script, bool printsToReport) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    const Platform::FileDescriptor reader(ends[0]);
    Platform::FileDescriptor writer(ends[1]);
    std::vector<std::string> arguments = _shell.arguments;
    arguments.insert(arguments.end(), {"-c", script});
    const Surroundings surroundings(_directory.File("work"), writer.Get(), printsToReport);
    pid_t child = 0;
    const int failure = posix_spawn(&child,
                                    _shell.path.c_str(),
                                    surroundings.Actions(),
                                    surroundings.Attributes(),
                                    Pointers(arguments).data(),
                                    Pointers(_environment).data());
    if (failure != 0) {
        throw std::system_error(failure, std::generic_category(), _shell.path);
    }
    ++_started;
    writer.Close();
    std::string text;
    const bool hasEnded = ReadReport(reader.Get(), text);
    if (!hasEnded) {
        kill(-child, SIGKILL);
    }
    waitpid(child, nullptr, 0);
    if (!hasEnded) {
        throw ShellHangs(_shell.name + " hangs: " + script);
    }
    return text;
}

std::vector<std::string> Aviary::Report(const std::string& script) {
    return Lines(Start(script, false));
}

std::string Aviary::Output(const std::string& script) {
    return Start(script, true);
}

std::vector<std::string> Aviary::Run(const std::string& line) {
    return CanariesIn(Report(line));
}

Aviary::Flight Aviary::RunAll(const std::vector<std::string>& lines) {
    std::size_t first = 0;
    while (first < lines.size()) {
        std::string script;
        std::vector<std::string> expected;
        std::size_t end = first;
        while (end < lines.size() &&
               (end == first || script.size() + lines[end].size() < kLongestScript)) {
            script += lines[end] + "\necho " + std::to_string(end) + " ${#PATH} >&8\n";
            expected.push_back(std::to_string(end) + " " + std::to_string(_pathSize));
            ++end;
        }
        const std::vector<std::string> report = Report(script);
        if (const std::vector<std::string> canaries = CanariesIn(report); !canaries.empty()) {
            return FindAlone(lines, first, end, canaries);
        }
        const auto [missing, ignored] =
            std::mismatch(expected.begin(), expected.end(), report.begin(), report.end());
        first += static_cast<std::size_t>(missing - expected.begin());
        if (first < end) {
            const std::vector<std::string> canaries = Run(lines[first]);
            if (!canaries.empty()) {
                return {first, canaries};
            }
            ++first;
        }
    }
    return {lines.size(), {}};
}

Aviary::Flight Aviary::FindAlone(const std::vector<std::string>& lines,
                                 std::size_t first,
                                 std::size_t end,
                                 const std::vector<std::string>& together) {
    for (std::size_t i = first; i < end; ++i) {
        if (std::vector<std::string> canaries = Run(lines[i]); !canaries.empty()) {
            return {i, canaries};
        }
    }
    return {first, together};
}

bool Aviary::CleanUp() {
    bool hasFiles = false;
    for (const auto& entry : std::filesystem::directory_iterator(_directory.File("work"))) {
        hasFiles = true;
        std::filesystem::remove_all(entry);
    }
    return hasFiles;
}

}  // namespace Corvel::Testing
