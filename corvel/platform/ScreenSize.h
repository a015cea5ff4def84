#pragma once

#include <cstdint>

namespace Corvel::Platform {

/// Asks the terminal behind a descriptor for its size, in characters.
///
/// @return false when the descriptor is no terminal; columns and rows are untouched then.
bool QueryScreenSize(int descriptor, std::uint16_t& columns, std::uint16_t& rows);

}  // namespace Corvel::Platform
