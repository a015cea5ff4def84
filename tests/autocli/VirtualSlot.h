#pragma once

#include <cstddef>
#include <cstring>

namespace Corvel::Testing {

/// Which of the virtual operations after the destructor a pointer to a virtual member function
/// means, counted from 1, in the order of its class. The C++ ABI of this platform keeps the position
/// in the table, in bytes and plus one, in the first word; the destructor takes two positions.
template <typename MemberFunction>
std::size_t VirtualSlot(MemberFunction function) {
    std::size_t word = 0;
    std::memcpy(&word, &function, sizeof word);
    return (word - 1) / sizeof(void*) - 1;
}

}  // namespace Corvel::Testing
