#include <errno.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "corvel/platform/Platform.h"

namespace {

/// What the child does to its descriptors before the program starts.
class FileActions {
public:
    /// Gives the child descriptors[i] as its descriptor i, and no other descriptor.
    FileActions(const int* descriptors, int count) noexcept {
        _error = posix_spawn_file_actions_init(&_actions);
        // A source that is also a target must get out of the way before that target is filled.
        const int* const highest = std::max_element(descriptors, descriptors + count);
        const int spare = count == 0 ? 0 : std::max(count, *highest + 1);
        const auto isInTheWay = [=](int target) {
            return descriptors[target] < count && descriptors[target] != target;
        };
        for (int target = 0; target < count; ++target) {
            if (isInTheWay(target)) {
                Duplicate(descriptors[target], spare + target);
            }
        }
        for (int target = 0; target < count; ++target) {
            Duplicate(isInTheWay(target) ? spare + target : descriptors[target], target);
        }
        CloseFrom(count);
    }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&_actions); }

    const posix_spawn_file_actions_t* Get() const noexcept { return &_actions; }
    /// @return the errno value of the first action that was refused, or 0.
    int Error() const noexcept { return _error; }

private:
    /// The child's copy survives exec, also when source and target are the same.
    void Duplicate(int source, int target) noexcept {
        if (_error == 0) {
            _error = posix_spawn_file_actions_adddup2(&_actions, source, target);
        }
    }
    void CloseFrom(int lowest) noexcept {
        if (_error == 0) {
            _error = posix_spawn_file_actions_addclosefrom_np(&_actions, lowest);
        }
    }

    posix_spawn_file_actions_t _actions;
    int _error;
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
    const FileActions actions(descriptors, static_cast<int>(descriptorCount));
    if (actions.Error() != 0) {
        return static_cast<std::uint64_t>(actions.Error());
    }
    const CleanSignals signals;
    pid_t started = 0;
    // posix_spawn does not change the vectors; its parameters are merely older than const.
    const int error = posix_spawn(&started,
                                  path,
                                  actions.Get(),
                                  signals.Get(),
                                  const_cast<char* const*>(argv),
                                  envp == nullptr ? environ : const_cast<char* const*>(envp));
    if (error == 0) {
        *pid = started;
    }
    return static_cast<std::uint64_t>(error);
}

void NukuserStatus_CodeToString(std::uint64_t code, char* buffer, std::size_t size, int /*flags*/) {
    const int error = static_cast<int>(static_cast<std::uint32_t>(code));
    std::array<char, 256> text{};
    std::snprintf(buffer, size, "%s", strerror_r(error, text.data(), text.size()));
}
