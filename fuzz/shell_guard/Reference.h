#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Corvel::Fuzz {

/// A command line of quotes, backslashes, comments and separators alone, as every shell reads it.
struct PlainReading {
    /// A letter for each byte, as many as could be read:
    ///   d  data                             q  opens or closes '..' or ".."
    ///   b  a blank between words            e  a backslash before data
    ///   o  one of ; & | and the newline     c  one of a backslash and a newline, which disappear
    ///   #  of a comment                     ~  what may become a home directory
    ///   t  the second of && || |&          h  a # behind what may be a blank to some shell
    std::string roles;
    /// Nothing else stands in the line: no expansion, group, redirection or end of a case.
    bool isWhole = true;
    /// Without their quotes and backslashes.
    std::vector<std::string> words;
    /// The first word of each command.
    std::vector<std::string> names;
};

PlainReading ReadPlainLine(std::string_view line);

/// What stands in one place of a line.
struct LinePart {
    std::string text;
    bool isValue = false;
};

/// The line, or what it is with a harmless word in the place of each value.
std::string LineOf(const std::vector<LinePart>& parts, bool isHarmless);

/// Whether every byte of a value is data or parts words, and no byte of the template means anything
/// else than it does beside harmless values.
///
/// @param harmless  is whole, and no value stands in the name of a command.
bool HoldsValuesAsData(const std::vector<LinePart>& parts,
                       const PlainReading& actual,
                       const PlainReading& harmless);

}  // namespace Corvel::Fuzz
