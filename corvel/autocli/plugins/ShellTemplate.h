#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "corvel/platform/Export.h"

/// The small text rules by which values are put into shell command templates.
namespace Corvel::AutoCli {

/// @return true exactly for newline and  ! " $ & ' ( ) * ; < > \ ^ ` |  . Deliberate: blank, tab,
///         # ? ~ [ ] { } and everything else are not bad, so values may still be split into words
///         and expanded as file name patterns.
CORVEL_EXPORT bool isBadChar(char c);

/// @return a copy with a backslash before every bad character. A newline becomes a backslash and a
///         newline, which the shell reads as a line continuation.
CORVEL_EXPORT std::string SanitizeInput(const std::string& text);

/// @return a copy without any `unwanted`; it is dropped, not escaped.
CORVEL_EXPORT std::string SanitizeChar(const std::string& text, char unwanted);

/// Finds the end of the group that begins at `start`: groups nested in it are skipped as a whole.
/// The character at `start` is the group's own opening one; when it is another, the group is taken
/// to have been opened before.
///
/// @param length  where the text ends, counted from its first character.
/// @return `start` and the size up to and including the closing character; size 0 when the text
///         ends before the group does. Takes linear time and constant stack at any nesting.
CORVEL_EXPORT std::pair<std::size_t, std::size_t> FindPairedTokenSize(const char* text,
                                                                      std::size_t start,
                                                                      std::size_t length,
                                                                      char open,
                                                                      char close);

}  // namespace Corvel::AutoCli
