#pragma once

#include <cstddef>

namespace Corvel::AutoCli {

/// How many bytes PutDecimal() may need.
constexpr std::size_t kMostDecimal = 20;

/// Writes a number in decimal to where there is room for kMostDecimal bytes and, beyond it, for 8
/// more. @return where it ends.
char* PutDecimal(char* at, long value);

}  // namespace Corvel::AutoCli
