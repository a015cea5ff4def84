#include "tests/metaobj/FailingAllocator.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();

std::size_t sCount = 0;
std::size_t sAllowed = kNoLimit;

}  // namespace

void* operator new(std::size_t size) {
    ++sCount;
    void* const memory = sCount > sAllowed ? nullptr : std::malloc(size == 0 ? 1 : size);
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

FailingAllocator::FailingAllocator(std::size_t allowed) {
    sCount = 0;
    sAllowed = allowed;
}

FailingAllocator::~FailingAllocator() {
    sAllowed = kNoLimit;
}

std::size_t FailingAllocator::Count() {
    return sCount;
}

bool FailingAllocator::HasFailed() {
    return sCount > sAllowed;
}

}  // namespace Corvel::Test
