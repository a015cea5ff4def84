#pragma once

#include <cstddef>

namespace Corvel::Test {

/// While one lives, it counts the allocations of the program, and can make them fail.
class FailingAllocator {
public:
    /// @param allowed  how many allocations succeed; every later one throws std::bad_alloc.
    explicit FailingAllocator(std::size_t allowed);
    FailingAllocator(const FailingAllocator&) = delete;
    FailingAllocator& operator=(const FailingAllocator&) = delete;
    ~FailingAllocator();

    /// @return how many were asked for so far, the failed ones included.
    static std::size_t Count();
    static bool HasFailed();
};

}  // namespace Corvel::Test
