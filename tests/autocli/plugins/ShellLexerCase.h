#pragma once

#include <iosfwd>
#include <string>

#include <gtest/gtest.h>

namespace Corvel::Testing {

/// A line, and below each of its bytes what the lexer says of it.
struct ShellReading {
    std::string line;
    /// w data, _ blank, ; operator, + its tail, q quote, e escape, c continuation, $ expansion,
    /// ~ tilde, # comment
    std::string roles;
    /// C command, A argument, = assignment, R reserved, N name, W case word, P pattern, T target,
    /// F descriptor, D delimiter; a blank where there is no word. Blanks at the end are left out.
    std::string places;
    /// ? where it is doubtful.
    std::string doubts;

    bool operator==(const ShellReading&) const = default;
};

/// For the message of a failed comparison.
std::ostream& operator<<(std::ostream& stream, const ShellReading& reading);

/// @return what the lexer makes of the line.
ShellReading ReadingOf(const std::string& line);

struct ShellLexerCase {
    std::string name;
    ShellReading expected;
};

/// The lines of one subject are one instantiation.
class ShellLexer : public testing::TestWithParam<ShellLexerCase> {
public:
    static std::string NameOf(const testing::TestParamInfo<ShellLexerCase>& info) {
        return info.param.name;
    }
};

}  // namespace Corvel::Testing
