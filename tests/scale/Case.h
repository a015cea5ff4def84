#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <span>
#include <streambuf>
#include <string>
#include <vector>

#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::Scale {

/// One thing that the worker does with a number of items, levels or bytes. It throws when what comes
/// out is not what it should be.
struct Case {
    const char* name;
    void (*run)(std::size_t size);
};

/// Values, trees and templates of a depth.
std::span<const Case> DeepCases();
/// As many of everything as the size says.
std::span<const Case> WideCases();
/// A list of that many structures through every formatter.
std::span<const Case> FormatCases();
/// Single texts of so many bytes.
std::span<const Case> TextCases();
/// What a child of a command prints; to standard output.
std::span<const Case> PrintCases();

/// Ends a case whose outcome is wrong, by an exception that says what was expected.
void Require(bool isTrue, const std::string& expectation);

/// The same text as often as that, one after the other.
std::string Repeated(const std::string& text, std::size_t count);

/// Blanks that make any command line longer than the system lets a program have.
std::string TooLongForShell();

/// Counts what is written, and forgets it.
class CountingBuffer final : public std::streambuf {
public:
    std::size_t Bytes() const { return _bytes; }
    std::size_t Lines() const { return _lines; }

private:
    std::streamsize xsputn(const char* text, std::streamsize size) override;
    int_type overflow(int_type character) override;

    std::size_t _bytes = 0;
    std::size_t _lines = 0;
};

/// How a value is to be printed.
struct Style {
    const char* formatter;
    /// "key=value" each.
    std::vector<std::string> parameters = {};
    unsigned short screenWidth = 0;
};

/// Formats the value and lets go of the text. @return how many lines it has.
std::size_t CountLines(const std::shared_ptr<MetaObj::MetaObject>& value, const Style& style);

}  // namespace Corvel::Scale
