#pragma once

#include <cstdint>

namespace Corvel::Testing {

/// What the program with the faulty allocator tells the test: the content of a file that both have
/// mapped, so that it also tells of a program that a signal ended.
struct AllocationReport {
    /// How many allocations were asked for, and how many of them failed.
    std::uint64_t count;
    std::uint64_t failed;
    /// What was left when its destructors ran: descriptors beside 0 to 2, and whether a child.
    std::uint32_t descriptors;
    std::uint32_t hasChild;
    /// Whether they ran.
    std::uint32_t ended;
};

}  // namespace Corvel::Testing
