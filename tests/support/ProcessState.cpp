#include "tests/support/ProcessState.h"

#include <errno.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>

namespace Corvel::Testing {

namespace {

std::atomic<int> interruptions = 0;

void CountInterruption(int) {
    ++interruptions;
}

unsigned long SetDescriptorLimit(unsigned long count) {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const unsigned long previous = limit.rlim_cur;
    limit.rlim_cur = count;
    setrlimit(RLIMIT_NOFILE, &limit);
    return previous;
}

void SetTimer(int microseconds) {
    const timeval period{0, microseconds};
    const itimerval timer{period, period};
    setitimer(ITIMER_REAL, &timer, nullptr);
}

}  // namespace

std::set<int> OpenDescriptors() {
    std::set<int> descriptors;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        descriptors.insert(std::stoi(entry.path().filename()));
    }
    // The one through which the folder was read is gone by now.
    std::erase_if(descriptors, [](int descriptor) {
        return !std::filesystem::exists(
            std::filesystem::symlink_status("/proc/self/fd/" + std::to_string(descriptor)));
    });
    return descriptors;
}

bool HasChild() {
    return waitpid(-1, nullptr, WNOHANG) != -1 || errno != ECHILD;
}

DescriptorLimit::DescriptorLimit(int count)
    : _saved(SetDescriptorLimit(static_cast<unsigned long>(count))) {}

DescriptorLimit::~DescriptorLimit() {
    SetDescriptorLimit(_saved);
}

Interruptions::Interruptions() {
    interruptions = 0;
    struct sigaction action {};
    action.sa_handler = CountInterruption;
    sigaction(SIGALRM, &action, nullptr);
    SetTimer(1000);
}

/// The handler stays: a signal may still be on its way, for a while under valgrind.
Interruptions::~Interruptions() {
    SetTimer(0);
}

int Interruptions::Count() {
    return interruptions;
}

}  // namespace Corvel::Testing
