#pragma once

#include <cstddef>
#include <limits>

namespace Corvel::Test {

/// While one lives, it counts the allocations of the program (of operator new and of malloc), and
/// can make them fail.
class FailingAllocator {
public:
    static constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();

    /// @param allowed   how many allocations succeed at first.
    /// @param failures  how many fail after them.
    explicit FailingAllocator(std::size_t allowed, std::size_t failures = kAll);
    FailingAllocator(const FailingAllocator&) = delete;
    FailingAllocator& operator=(const FailingAllocator&) = delete;
    ~FailingAllocator();

    /// @return how many were asked for, the failed ones included.
    static std::size_t Count();
    static bool HasFailed();
};

}  // namespace Corvel::Test
