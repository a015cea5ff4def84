#include "tests/support/ProcessRunner.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <ostream>
#include <system_error>

namespace Corvel::Testing {

namespace {

constexpr unsigned kSecondsToLive = 60;
constexpr int kCannotStart = 127;

void Require(bool done, const char* what) {
    if (!done) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

/// A file without a name, which stands for one standard stream.
class StreamFile {
public:
    StreamFile() : _descriptor(::memfd_create("stream", MFD_CLOEXEC)) {
        Require(_descriptor >= 0, "memfd_create");
    }
    StreamFile(const StreamFile&) = delete;
    StreamFile& operator=(const StreamFile&) = delete;
    ~StreamFile() { ::close(_descriptor); }

    int Descriptor() const { return _descriptor; }

    /// Puts the text in and goes back to the start.
    void Fill(const std::string& text) {
        std::size_t done = 0;
        while (done < text.size()) {
            const ssize_t written = ::write(_descriptor, text.data() + done, text.size() - done);
            Require(written > 0, "write");
            done += static_cast<std::size_t>(written);
        }
        Require(::lseek(_descriptor, 0, SEEK_SET) == 0, "lseek");
    }

    std::string Content() const {
        std::string content(static_cast<std::size_t>(::lseek(_descriptor, 0, SEEK_END)), '\0');
        std::size_t done = 0;
        while (done < content.size()) {
            const ssize_t count = ::pread(_descriptor,
                                          content.data() + done,
                                          content.size() - done,
                                          static_cast<off_t>(done));
            Require(count > 0, "pread");
            done += static_cast<std::size_t>(count);
        }
        return content;
    }

private:
    int _descriptor;
};

/// A null-terminated vector of the texts, which it does not own.
std::vector<char*> Pointers(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts) {
        pointers.push_back(const_cast<char*>(text.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// The child's own part, from the fork to its program.
[[noreturn]] void Become(const Command& command,
                         const char* program,
                         char* const* arguments,
                         char* const* environment,
                         const StreamFile (&streams)[3]) {
    for (int i = 0; i < 3; ++i) {
        ::dup2(streams[i].Descriptor(), i);
    }
    ::alarm(kSecondsToLive);
    if (command.directory.empty() || ::chdir(command.directory.c_str()) == 0) {
        if (command.prepare) {
            command.prepare();
        }
        ::execve(program, arguments, environment);
    }
    ::_exit(kCannotStart);
}

int Wait(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) != child) {
        Require(errno == EINTR, "waitpid");
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Result& result) {
    return stream << "status " << result.status << "\n--- out\n"
                  << result.out << "--- err\n"
                  << result.err;
}

std::vector<std::string> FixedEnvironment() {
    return {"HOME=/nonexistent", "LANG=C.UTF-8", "PATH=/usr/bin:/bin", "TZ=UTC"};
}

Result RunProcess(const Command& command) {
    StreamFile streams[3];
    streams[0].Fill(command.input);
    const std::vector<char*> arguments = Pointers(command.arguments);
    const std::vector<char*> environment = Pointers(command.environment);

    const std::string& program = command.program.empty() ? command.arguments[0] : command.program;
    const pid_t child = ::fork();
    Require(child >= 0, "fork");
    if (child == 0) {
        Become(command, program.c_str(), arguments.data(), environment.data(), streams);
    }
    const int status = Wait(child);
    return {status, streams[1].Content(), streams[2].Content()};
}

Result RunShell(const std::string& line, const std::string& input) {
    return RunProcess({{"/bin/sh", "-c", line}, input});
}

}  // namespace Corvel::Testing
