#pragma once

#include <set>

namespace Corvel::Testing {

/// The numbers of all descriptors that are open in this process.
std::set<int> OpenDescriptors();

/// Whether this process has a child, running or dead, that nobody has waited for. A dead one is
/// reaped by the question.
bool HasChild();

/// As long as it lives this process can have no descriptor numbered `count` or higher.
class DescriptorLimit {
public:
    explicit DescriptorLimit(int count);
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;
    ~DescriptorLimit();

private:
    unsigned long _saved;
};

/// As long as it lives this process gets a signal every millisecond, which interrupts system calls.
class Interruptions {
public:
    Interruptions();
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;
    ~Interruptions();

    /// How many there have been.
    static int Count();
};

}  // namespace Corvel::Testing
