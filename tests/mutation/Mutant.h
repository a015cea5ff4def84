#pragma once

#include <errno.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <stdlib.h>
#include <string.h>

/// What scripts/mutate puts into the sources that it changes. One build holds many mutants; which of them
/// is on, the environment says:
///
///   CORVEL_MUTANT=<number>         this mutant is on; without it, none is
///   CORVEL_MUTANTS_REACHED=<file>  the byte at each number that is asked for becomes 1
///
/// A process whose environment was emptied reads that of process 1, which scripts/mutate starts in a
/// process namespace of its own.
///
/// Never seen while the compiler computes, nor before static objects are made. Nothing of it is exported.
#pragma GCC visibility push(hidden)
namespace CorvelMutation {

constexpr long kMostMutants = 1 << 16;

/// Copies the value of a variable from the first environment; false where it has none.
inline bool ReadFirstEnvironment(const char* name, char* value, size_t room) noexcept {
    static char environment[1 << 16];
    const int file = open("/proc/1/environ", O_RDONLY | O_CLOEXEC);
    if (file == -1) {
        return false;
    }
    size_t size = 0;
    for (ssize_t count;
         size < sizeof(environment) - 1 &&
         (count = read(file, environment + size, sizeof(environment) - 1 - size)) > 0;) {
        size += static_cast<size_t>(count);
    }
    close(file);
    environment[size] = '\0';
    const size_t nameSize = strlen(name);
    for (const char* entry = environment; entry < environment + size; entry += strlen(entry) + 1) {
        if (strncmp(entry, name, nameSize) == 0 && entry[nameSize] == '=' &&
            strlen(entry + nameSize + 1) < room) {
            strcpy(value, entry + nameSize + 1);
            return true;
        }
    }
    return false;
}

inline bool ReadVariable(const char* name, char* value, size_t room) noexcept {
    const char* own = getenv(name);
    if (own != nullptr && strlen(own) < room) {
        strcpy(value, own);
        return true;
    }
    return ReadFirstEnvironment(name, value, room);
}

struct Run {
    Run() noexcept {
        const int before = errno;
        char value[4096];
        if (ReadVariable("CORVEL_MUTANT", value, sizeof(value))) {
            active = atol(value);
        }
        if (ReadVariable("CORVEL_MUTANTS_REACHED", value, sizeof(value))) {
            const int file = open(value, O_RDWR | O_CLOEXEC);
            if (file != -1) {
                void* shared =
                    mmap(nullptr, kMostMutants, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
                reached = shared == MAP_FAILED ? nullptr : static_cast<unsigned char*>(shared);
                close(file);
            }
        }
        errno = before;
    }

    long active = 0;
    unsigned char* reached = nullptr;
};

inline Run run;

inline bool IsActive(long number) noexcept {
    if (run.reached != nullptr) {
        run.reached[number] = 1;
    }
    return run.active == number;
}

constexpr bool On(long number) noexcept {
    return !__builtin_is_constant_evaluated() && IsActive(number);
}

// Comparisons that take in their bound, or leave it out, while the mutant is on.

template <typename Left, typename Right>
constexpr bool Less(long number, const Left& left, const Right& right) {
    return On(number) ? left <= right : left < right;
}

template <typename Left, typename Right>
constexpr bool LessOrEqual(long number, const Left& left, const Right& right) {
    return On(number) ? left < right : left <= right;
}

template <typename Left, typename Right>
constexpr bool Greater(long number, const Left& left, const Right& right) {
    return On(number) ? left >= right : left > right;
}

template <typename Left, typename Right>
constexpr bool GreaterOrEqual(long number, const Left& left, const Right& right) {
    return On(number) ? left > right : left >= right;
}

}  // namespace CorvelMutation
#pragma GCC visibility pop
