// Preloaded into quorcli, before the search for leaks: allocations fail. Children of the program are
// spared.
//
// CORVEL_ALLOCATION_REPORT   the file of an AllocationReport
// CORVEL_ALLOCATION_FAILS    the number of the one that fails, the first is 1; none where it is not set
// CORVEL_ALLOCATIONS_FAIL    the same, and all behind it fail, too
// CORVEL_ALLOCATION_LEAKS    where it is set, some memory is lost
//
// The first that counts is the first one after the C library has its environment. Before that the
// system's loader maps what the program links, from memory of its own for the most part.

#include <errno.h>
#include <fcntl.h>
#include <sys/auxv.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include "tests/faults/AllocationReport.h"

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): others chose the names
extern "C" {
// Of the search for leaks, which is preloaded behind this file.
void* __interceptor_malloc(std::size_t size);
void* __interceptor_calloc(std::size_t count, std::size_t size);
void* __interceptor_realloc(void* memory, std::size_t size);
void* __interceptor_memalign(std::size_t alignment, std::size_t size);
void __lsan_ignore_object(const void* memory);
int __lsan_is_turned_off();
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

namespace {

using Corvel::Testing::AllocationReport;

constexpr int kFirstOwnDescriptor = 3;
constexpr int kDescriptorsLookedAt = 256;

/// It is used before constructors run.
struct State {
    bool isSetUp;
    bool isProgram;
    std::uint64_t first;
    std::uint64_t last;
    AllocationReport* report;
};

constinit State state = {};

/// Whether this process is the program itself, and not a shell around it or a child of it.
bool IsProgram() {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the auxiliary vector holds addresses as numbers
    const auto* const path = reinterpret_cast<const char*>(getauxval(AT_EXECFN));
    const char* const name = path == nullptr ? nullptr : std::strrchr(path, '/');
    return name != nullptr && std::strcmp(name, "/quorcli") == 0;
}

AllocationReport* MapReport() {
    const char* const path = std::getenv("CORVEL_ALLOCATION_REPORT");
    const int file = path == nullptr ? -1 : open(path, O_RDWR | O_CLOEXEC);
    if (file < 0) {
        return nullptr;
    }
    void* const memory =
        mmap(nullptr, sizeof(AllocationReport), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    return memory == MAP_FAILED ? nullptr : static_cast<AllocationReport*>(memory);
}

std::uint64_t Number(const char* variable) {
    const char* const text = std::getenv(variable);
    return text == nullptr ? 0 : std::strtoull(text, nullptr, 10);
}

void SetUp() {
    state.isSetUp = true;
    if (!IsProgram()) {
        return;
    }
    state.report = MapReport();
    state.isProgram = state.report != nullptr;
    state.first = state.last = Number("CORVEL_ALLOCATION_FAILS");
    if (state.first == 0) {
        state.first = Number("CORVEL_ALLOCATIONS_FAIL");
        state.last = state.first == 0 ? 0 : UINT64_MAX;
    }
    if (std::getenv("CORVEL_ALLOCATION_LEAKS") != nullptr) {
        static_cast<void>(__interceptor_malloc(1));
    }
    unsetenv("LD_PRELOAD");
}

/// What the system's loader asks for it keeps in places that the search for leaks does not know. That
/// knows the loader as a caller, but it sees us.
void* KnownToTheLoader(void* memory, const void* caller) {
    constexpr std::uintptr_t kLoaderSize = 0x40000;
    const auto address = reinterpret_cast<std::uintptr_t>(caller);
    const std::uintptr_t loader = getauxval(AT_BASE);
    if (memory != nullptr && address >= loader && address - loader < kLoaderSize) {
        __lsan_ignore_object(memory);
    }
    return memory;
}

/// Counts one more. @return whether it fails.
bool NextFails() {
    if (!state.isSetUp && environ != nullptr) {
        SetUp();
    }
    if (!state.isProgram) {
        return false;
    }
    const std::uint64_t number = ++state.report->count;
    const bool fails = number >= state.first && number <= state.last;
    if (fails) {
        ++state.report->failed;
        errno = ENOMEM;
    }
    return fails;
}

/// At the end of the program.
[[gnu::destructor]] void TellWhatIsLeft() {
    if (!state.isProgram) {
        return;
    }
    for (int i = kFirstOwnDescriptor; i < kDescriptorsLookedAt; ++i) {
        state.report->descriptors += fcntl(i, F_GETFD) == -1 ? 0U : 1U;
    }
    state.report->hasChild = waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD ? 0 : 1;
    state.report->ended = 1;
}

}  // namespace

extern "C" {

// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming): it is asked for by this name
int __lsan_is_turned_off() {
    return state.isProgram ? 0 : 1;
}

void* malloc(std::size_t size) {
    return NextFails() ? nullptr
                       : KnownToTheLoader(__interceptor_malloc(size), __builtin_return_address(0));
}

void* calloc(std::size_t count, std::size_t size) {
    return NextFails()
               ? nullptr
               : KnownToTheLoader(__interceptor_calloc(count, size), __builtin_return_address(0));
}

void* realloc(void* memory, std::size_t size) {
    return NextFails()
               ? nullptr
               : KnownToTheLoader(__interceptor_realloc(memory, size), __builtin_return_address(0));
}

// NOLINTNEXTLINE(readability-identifier-naming): the C library's name
void* memalign(std::size_t alignment, std::size_t size) {
    return NextFails() ? nullptr
                       : KnownToTheLoader(__interceptor_memalign(alignment, size),
                                          __builtin_return_address(0));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return memalign(alignment, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    void* const made = memalign(alignment, size);
    if (made == nullptr) {
        return ENOMEM;
    }
    *memory = made;
    return 0;
}

}  // extern "C"

// Those of the search for leaks do not ask malloc, as those of the C++ library do.

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return malloc(size);
}

void* operator new(std::size_t size) {
    void* const memory = malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void* operator new[](std::size_t size) {
    return operator new(size);
}
