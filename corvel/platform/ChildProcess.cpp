#include "corvel/platform/ChildProcess.h"

#include <errno.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "corvel/platform/FileDescriptor.h"
#include "corvel/platform/Platform.h"

namespace Corvel::Platform {

namespace {

constexpr int kDoNotCare = -1;

bool HoldsNul(const std::string& text) {
    return text.find('\0') != std::string::npos;
}

/// Returns early when the process ends; at once where the kernel (before 5.3) knows no pidfd.
void AwaitEnd(int pid, int milliseconds) noexcept {
    const FileDescriptor process(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));
    if (process.IsOpen()) {
        pollfd ended{process.Get(), POLLIN, 0};
        poll(&ended, 1, milliseconds);
    }
}

}  // namespace

ChildProcess::~ChildProcess() {
    if (_pid != kNone && !HasBeenReaped()) {
        AwaitEnd(_pid, kGraceMilliseconds);
        HasBeenReaped();
    }
}

std::uint64_t ChildProcess::Start(const std::vector<std::string>& arguments,
                                  const std::array<int, 3>& descriptors) {
    if (std::any_of(arguments.begin(), arguments.end(), HoldsNul)) {
        return EINVAL;
    }
    std::vector<const char*> argv;
    argv.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    argv.push_back(nullptr);
    return NukuserCompat_ForkExec(argv.front(),
                                  argv.data(),
                                  nullptr,
                                  kDoNotCare,
                                  descriptors.data(),
                                  descriptors.size(),
                                  kDoNotCare,
                                  kDoNotCare,
                                  0,
                                  &_pid);
}

int ChildProcess::Wait(int& status) noexcept {
    int reported = 0;
    while (waitpid(_pid, &reported, 0) == -1) {
        if (errno != EINTR) {
            _pid = kNone;
            return errno;
        }
    }
    _pid = kNone;
    status = reported;
    return 0;
}

bool ChildProcess::HasBeenReaped() const noexcept {
    return waitpid(_pid, nullptr, WNOHANG) != 0;
}

}  // namespace Corvel::Platform
