#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Corvel::AutoCli {

/// A printf format from a user, with at most one conversion, parsed once and applied to any number
/// of values. Gives what snprintf gives in the "C" locale, but never reads an argument that is not
/// there, and never does more work than for the text that it may produce.
///
/// Like a C string, the format ends at its first NUL.
///
/// Failures: the functions return 0 or an error number, and then append nothing: EINVAL for a format
///           that has two conversions or one that does not fit the value, EOVERFLOW for a width, a
///           precision or a whole text longer than INT_MAX.
/// Lifetime: the format is copied.
class PrintfFormat {
public:
    enum class Length : unsigned char { Char, Short, Int, Long };

    struct Conversion {
        /// One of d i o u x X s; 0 when the format has no conversion.
        char letter = 0;
        Length length = Length::Int;
        bool leftAligned = false;
        bool zeroPadded = false;
        bool alternate = false;
        /// What stands before a number that is not negative: "+", " " or nothing.
        std::string_view plusSign;
        std::size_t width = 0;
        bool hasPrecision = false;
        std::size_t precision = 0;
    };

    explicit PrintfFormat(std::string_view format);

    /// Fits d i o u x X with any length modifier: the value is cut to that length as C does.
    /// @param limit  no more than so many bytes are appended.
    int AppendInteger(std::string& out, long value, std::size_t limit) const;
    /// Fits s without a length modifier. The text ends at its first NUL.
    int AppendText(std::string& out, std::string_view text, std::size_t limit) const;

private:
    struct Body;
    int Append(std::string& out, const Body& body, std::size_t limit) const;

    std::string _head;
    Conversion _conversion;
    std::string _tail;
    /// 0, or the error that the format has whatever the value is.
    int _error;
};

}  // namespace Corvel::AutoCli
