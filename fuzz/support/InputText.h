#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Corvel::Fuzz {

// How targets take their inputs apart. An input is a text as far as it can be one, so that a seed
// can be written, and a finding read, by hand. Every input means something.

/// The bytes that the fuzzer hands over.
std::string ToText(const std::uint8_t* data, std::size_t size);

/// What stands between the lines "%%".
/// @return at least so many sections, the missing ones empty.
std::vector<std::string> SplitSections(std::string_view text, std::size_t atLeast);

/// The lines of a text; a final newline begins no line.
std::vector<std::string> SplitLines(std::string_view text);

/// @return what stands before the first "=" and what stands behind it.
std::pair<std::string, std::string> SplitPair(std::string_view text);

/// Reads caret notation: "^J" is a newline, "^@" a NUL, and so on; everything else stays.
std::string FromCarets(std::string_view text);

/// @return the number at the start of a text, kept within the bounds; the lower one if there is none.
long ToNumber(const std::string& text, long lowest, long highest);

}  // namespace Corvel::Fuzz
