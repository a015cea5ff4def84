#include "corvel/platform/LoadingScope.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <system_error>

#include "corvel/platform/FileDescriptor.h"
#include "corvel/platform/StandardStreams.h"

namespace Corvel::Platform {

namespace {

/// Empty when it cannot be told.
std::string WorkingDirectory() {
    std::error_code failure;
    return std::filesystem::current_path(failure);
}

bool IsOpen(int descriptor) {
    return fcntl(descriptor, F_GETFD) != -1 || errno != EBADF;
}

/// Puts the null device in the place of a standard stream.
void ReplaceStandardStream(int stream) {
    // Children inherit standard streams.
    // NOLINTNEXTLINE(android-cloexec-open)
    FileDescriptor null(open("/dev/null", stream == STDERR_FILENO ? O_WRONLY : O_RDONLY));
    if (null.Get() == stream) {
        static_cast<void>(null.Release());
    } else if (null.IsOpen()) {
        dup2(null.Get(), stream);
    }
}

}  // namespace

LoadingScope* LoadingScope::_sCurrent = nullptr;

LoadingScope::LoadingScope(const std::string& path)
    : _refusal("Unable to load plugin from " + path + ": it ended the process\n"),
      _workingDirectory(WorkingDirectory()),
      _directory(CurrentDirectory()),
      _openStreams{IsOpen(STDIN_FILENO), IsOpen(STDOUT_FILENO), IsOpen(STDERR_FILENO)},
      _process(getpid()),
      _thread(pthread_self()),
      _outer(_sCurrent) {
    RequireRefusal();
    _sCurrent = this;
}

LoadingScope::~LoadingScope() {
    _sCurrent = _outer;
    if (!_workingDirectory.empty() && CurrentDirectory() != _directory) {
        // By its name: the library may have closed a descriptor that we kept for it.
        static_cast<void>(chdir(_workingDirectory.c_str()) == 0);
    }
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (_openStreams[static_cast<std::size_t>(stream)] && !IsOpen(stream)) {
            ReplaceStandardStream(stream);
        }
    }
}

LoadingScope::DirectoryIdentity LoadingScope::CurrentDirectory() {
    struct stat status = {};
    return stat(".", &status) == 0 ? DirectoryIdentity{status.st_dev, status.st_ino}
                                   : DirectoryIdentity{};
}

/// Registers the refusal: once in the process, before any library can register functions of its own,
/// which run earlier.
void LoadingScope::RequireRefusal() {
    [[maybe_unused]] static const bool registered = [] {
        if (std::atexit(&RefuseToSucceed) != 0 || std::at_quick_exit(&RefuseToSucceed) != 0) {
            throw std::bad_alloc();
        }
        return true;
    }();
}

void LoadingScope::RefuseToSucceed() {
    const LoadingScope* const scope = _sCurrent;
    if (scope == nullptr || scope->_process != getpid() ||
        pthread_equal(scope->_thread, pthread_self()) == 0) {
        return;
    }
    WriteErrorLines(scope->_refusal);
    _exit(EXIT_FAILURE);
}

}  // namespace Corvel::Platform
