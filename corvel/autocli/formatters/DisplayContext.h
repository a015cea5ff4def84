#pragma once

#include <cstdint>

namespace Corvel::AutoCli {

/// The screen that a formatter writes for. Zero means unknown; a width of zero turns all wrapping
/// off.
///
/// Units: columns and rows of characters.
struct DisplayContext {
    std::uint16_t width = 0;
    std::uint16_t height = 0;
};

}  // namespace Corvel::AutoCli
