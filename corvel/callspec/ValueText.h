#pragma once

#include <string>

namespace Corvel::CallSpec {

/// Reads a decimal integer as strtoll does: leading white space and a sign are allowed, a number out
/// of range becomes the nearest one in range. The whole text must be one, and may not be empty.
/// @param value  written only on success.
bool ReadInteger(const std::string& text, long& value);

/// Does the word mean true? 1, yes, y, true, True, t and T do.
bool IsTrueWord(const std::string& text);

}  // namespace Corvel::CallSpec
