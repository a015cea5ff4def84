#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <new>
#include <vector>

#include "corvel/platform/FileDescriptor.h"
#include "corvel/platform/Platform.h"

namespace {

using Corvel::Platform::FileDescriptor;

class FileActions {
public:
    FileActions() noexcept { posix_spawn_file_actions_init(&_actions); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&_actions); }

    /// Gives the child descriptors[i] as its descriptor i, and nothing else.
    /// @return 0 or an errno value.
    int Map(const int* descriptors, int count) {
        for (int target = 0; target < count; ++target) {
            int source = descriptors[target];
            if (source < count && source != target) {
                // An earlier target may have taken its number by the time it is its turn.
                source = _copies.emplace_back(fcntl(source, F_DUPFD_CLOEXEC, count)).Get();
                if (source == -1) {
                    return errno;
                }
            }
            // With source == target this takes the child's copy out of close-on-exec.
            if (const int error = posix_spawn_file_actions_adddup2(&_actions, source, target)) {
                return error;
            }
        }
        return posix_spawn_file_actions_addclosefrom_np(&_actions, count);
    }

    const posix_spawn_file_actions_t* Get() const noexcept { return &_actions; }

private:
    posix_spawn_file_actions_t _actions;
    std::vector<FileDescriptor> _copies;
};

/// SIGPIPE back to its default, and no signal blocked, whatever the caller has done to its own.
class CleanSignals {
public:
    CleanSignals() noexcept {
        posix_spawnattr_init(&_attributes);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&_attributes, &signals);
        sigaddset(&signals, SIGPIPE);
        posix_spawnattr_setsigdefault(&_attributes, &signals);
        posix_spawnattr_setflags(&_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    CleanSignals(const CleanSignals&) = delete;
    CleanSignals& operator=(const CleanSignals&) = delete;
    ~CleanSignals() { posix_spawnattr_destroy(&_attributes); }

    const posix_spawnattr_t* Get() const noexcept { return &_attributes; }

private:
    posix_spawnattr_t _attributes;
};

int Spawn(const char* path,
          const char* const* argv,
          const char* const* envp,
          const int* descriptors,
          int descriptorCount,
          int* pid) {
    FileActions actions;
    if (const int error = actions.Map(descriptors, descriptorCount)) {
        return error;
    }
    const CleanSignals signals;
    // posix_spawn promises not to change the vectors; its parameters merely are older than const.
    return posix_spawn(pid,
                       path,
                       actions.Get(),
                       signals.Get(),
                       const_cast<char* const*>(argv),
                       envp == nullptr ? environ : const_cast<char* const*>(envp));
}

}  // namespace

std::uint64_t NukuserCompat_ForkExec(const char* path,
                                     const char* const* argv,
                                     const char* const* envp,
                                     int /*resourcePool*/,
                                     const int* descriptors,
                                     std::size_t descriptorCount,
                                     int /*userId*/,
                                     int /*groupId*/,
                                     int /*flags*/,
                                     int* pid) {
    try {
        pid_t started = 0;
        const int error =
            Spawn(path, argv, envp, descriptors, static_cast<int>(descriptorCount), &started);
        if (error == 0) {
            *pid = started;
        }
        return static_cast<std::uint64_t>(error);
    } catch (const std::bad_alloc&) {
        return ENOMEM;
    }
}

void NukuserStatus_CodeToString(std::uint64_t code, char* buffer, std::size_t size, int /*flags*/) {
    const int error = static_cast<int>(static_cast<std::uint32_t>(code));
    std::array<char, 256> text{};
    std::snprintf(buffer, size, "%s", strerror_r(error, text.data(), text.size()));
}
