#include "tests/metaobj/FailingAllocator.h"

#include <cstdlib>
#include <new>

namespace {

using Corvel::Test::FailingAllocator;

std::size_t sCount = 0;
std::size_t sAllowed = FailingAllocator::kAll;
std::size_t sFailures = 0;

}  // namespace

// The linker puts __wrap_malloc in the place of malloc (--wrap).
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the linker chooses the names
extern "C" {
void* __real_malloc(std::size_t size);

void* __wrap_malloc(std::size_t size) {
    ++sCount;
    const bool fails = sCount > sAllowed && sCount - sAllowed <= sFailures;
    return fails ? nullptr : __real_malloc(size);
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

void* operator new(std::size_t size) {
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace Corvel::Test {

FailingAllocator::FailingAllocator(std::size_t allowed, std::size_t failures) {
    sCount = 0;
    sAllowed = allowed;
    sFailures = failures;
}

FailingAllocator::~FailingAllocator() {
    sAllowed = kAll;
}

std::size_t FailingAllocator::Count() {
    return sCount;
}

bool FailingAllocator::HasFailed() {
    return sCount > sAllowed;
}

}  // namespace Corvel::Test
