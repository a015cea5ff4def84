#include "corvel/autocli/formatters/PrintfFormat.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <climits>

namespace Corvel::AutoCli {

/// A converted value, unpadded: the prefix, the zeros and the digits stand in this order.
struct PrintfFormat::Body {
    std::string_view prefix;
    std::size_t zeros = 0;
    std::string_view digits;

    std::size_t Size() const { return prefix.size() + zeros + digits.size(); }
};

namespace {

/// The text as a C string has it.
std::string_view UpToNul(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

/// Reads a format from left to right. Each step returns 0 or the error number.
class Parser {
public:
    explicit Parser(std::string_view format) : _rest(UpToNul(format)) {}

    int Parse(std::string& head, PrintfFormat::Conversion& conversion, std::string& tail) {
        while (!_rest.empty()) {
            std::string& literals = conversion.letter == 0 ? head : tail;
            const std::size_t length = std::min(_rest.find('%'), _rest.size());
            literals.append(_rest.substr(0, length));
            _rest.remove_prefix(length);
            if (!Take('%')) {
                continue;
            }
            if (Take('%')) {
                literals += '%';
            } else if (conversion.letter != 0) {
                return EINVAL;
            } else if (const int error = ParseConversion(conversion); error != 0) {
                return error;
            }
        }
        return 0;
    }

private:
    int ParseConversion(PrintfFormat::Conversion& conversion) {
        ParseFlags(conversion);
        if (const int error = ParseNumber(conversion.width); error != 0) {
            return error;
        }
        conversion.hasPrecision = Take('.');
        if (conversion.hasPrecision) {
            if (const int error = ParseNumber(conversion.precision); error != 0) {
                return error;
            }
        }
        const bool hasLength = ParseLength(conversion.length);
        const std::string_view letters = hasLength ? "diouxX" : "diouxXs";
        if (_rest.empty() || letters.find(_rest.front()) == std::string_view::npos) {
            return EINVAL;
        }
        conversion.letter = _rest.front();
        _rest.remove_prefix(1);
        return 0;
    }

    void ParseFlags(PrintfFormat::Conversion& conversion) {
        for (;;) {
            if (Take('-')) {
                conversion.leftAligned = true;
            } else if (Take('0')) {
                conversion.zeroPadded = true;
            } else if (Take('#')) {
                conversion.alternate = true;
            } else if (Take('+')) {
                conversion.plusSign = "+";
            } else if (Take(' ')) {
                conversion.plusSign = conversion.plusSign.empty() ? " " : conversion.plusSign;
            } else if (!Take('\'')) {  // groups thousands, which the "C" locale has not
                return;
            }
        }
    }

    int ParseNumber(std::size_t& number) {
        for (; !_rest.empty() && _rest.front() >= '0' && _rest.front() <= '9';
             _rest.remove_prefix(1)) {
            number = number * 10 + static_cast<std::size_t>(_rest.front() - '0');
            if (number > INT_MAX) {
                return EOVERFLOW;
            }
        }
        return 0;
    }

    bool ParseLength(PrintfFormat::Length& length) {
        if (Take('h')) {
            length = Take('h') ? PrintfFormat::Length::Char : PrintfFormat::Length::Short;
            return true;
        }
        if (Take('l')) {
            Take('l');
        } else if (!Take('q') && !Take('L') && !Take('j') && !Take('z') && !Take('t')) {
            return false;
        }
        length = PrintfFormat::Length::Long;
        return true;
    }

    bool Take(char expected) {
        if (_rest.empty() || _rest.front() != expected) {
            return false;
        }
        _rest.remove_prefix(1);
        return true;
    }

    std::string_view _rest;
};

/// A number as one conversion sees it: cut to its length as C does.
struct Number {
    bool isNegative = false;
    unsigned long magnitude = 0;
};

long CutSigned(long value, PrintfFormat::Length length) {
    switch (length) {
        case PrintfFormat::Length::Char:
            // NOLINTNEXTLINE(bugprone-signed-char-misuse): a number, whose sign is to be kept
            return static_cast<signed char>(value);
        case PrintfFormat::Length::Short:
            return static_cast<short>(value);
        case PrintfFormat::Length::Int:
            return static_cast<int>(value);
        case PrintfFormat::Length::Long:
            break;
    }
    return value;
}

Number ReadSigned(long value, PrintfFormat::Length length) {
    const long cut = CutSigned(value, length);
    const auto bits = static_cast<unsigned long>(cut);
    return cut < 0 ? Number{true, 0 - bits} : Number{false, bits};
}

unsigned long ReadUnsigned(long value, PrintfFormat::Length length) {
    switch (length) {
        case PrintfFormat::Length::Char:
            return static_cast<unsigned char>(value);
        case PrintfFormat::Length::Short:
            return static_cast<unsigned short>(value);
        case PrintfFormat::Length::Int:
            return static_cast<unsigned int>(value);
        case PrintfFormat::Length::Long:
            break;
    }
    return static_cast<unsigned long>(value);
}

bool IsSigned(char letter) {
    return letter == 'd' || letter == 'i';
}

int Base(char letter) {
    switch (letter) {
        case 'o':
            return 8;
        case 'x':
        case 'X':
            return 16;
        default:
            return 10;
    }
}

/// The digits of one number; at most the 22 octal ones of 64 bits.
class Digits {
public:
    Digits(unsigned long magnitude, char letter) {
        char* const begin = _characters.data();
        char* const end =
            std::to_chars(begin, begin + _characters.size(), magnitude, Base(letter)).ptr;
        if (letter == 'X') {
            std::transform(begin, end, begin, [](char digit) {
                return digit >= 'a' ? static_cast<char>(digit - 'a' + 'A') : digit;
            });
        }
        _count = static_cast<std::size_t>(end - begin);
    }

    std::string_view View() const { return {_characters.data(), _count}; }

private:
    std::array<char, 22> _characters;
    std::size_t _count;
};

std::string_view Prefix(const Number& number, const PrintfFormat::Conversion& conversion) {
    if (IsSigned(conversion.letter)) {
        return number.isNegative ? "-" : conversion.plusSign;
    }
    const bool isHexadecimal = Base(conversion.letter) == 16;
    if (!isHexadecimal || !conversion.alternate || number.magnitude == 0) {
        return {};
    }
    return conversion.letter == 'x' ? "0x" : "0X";
}

/// How many zeros stand before the digits.
std::size_t Zeros(std::string_view prefix,
                  std::string_view digits,
                  const PrintfFormat::Conversion& conversion) {
    std::size_t wanted = conversion.precision;
    if (conversion.letter == 'o' && conversion.alternate && digits.substr(0, 1) != "0") {
        wanted = std::max(wanted, digits.size() + 1);
    }
    if (conversion.zeroPadded && !conversion.leftAligned && !conversion.hasPrecision) {
        wanted = std::max(wanted, conversion.width - std::min(conversion.width, prefix.size()));
    }
    return wanted - std::min(wanted, digits.size());
}

/// Appends to a text until a limit is reached, and drops the rest.
class LimitedText {
public:
    LimitedText(std::string& out, std::size_t limit) : _out(out), _room(limit) {}

    void Append(std::string_view text) {
        text = text.substr(0, _room);
        _out.append(text);
        _room -= text.size();
    }
    void Append(std::size_t count, char character) {
        count = std::min(count, _room);
        _out.append(count, character);
        _room -= count;
    }

private:
    std::string& _out;
    std::size_t _room;
};

}  // namespace

PrintfFormat::PrintfFormat(std::string_view format)
    : _error(Parser(format).Parse(_head, _conversion, _tail)) {}

int PrintfFormat::AppendInteger(std::string& out, long value, std::size_t limit) const {
    if (_conversion.letter == 0) {
        return Append(out, {}, limit);
    }
    if (_conversion.letter == 's') {
        return EINVAL;
    }
    const Number number = IsSigned(_conversion.letter)
                              ? ReadSigned(value, _conversion.length)
                              : Number{.magnitude = ReadUnsigned(value, _conversion.length)};
    const Digits digits(number.magnitude, _conversion.letter);
    const bool isBlank =
        number.magnitude == 0 && _conversion.hasPrecision && _conversion.precision == 0;
    Body body;
    body.prefix = Prefix(number, _conversion);
    body.digits = isBlank ? std::string_view() : digits.View();
    body.zeros = Zeros(body.prefix, body.digits, _conversion);
    return Append(out, body, limit);
}

int PrintfFormat::AppendText(std::string& out, std::string_view text, std::size_t limit) const {
    if (_conversion.letter == 0) {
        return Append(out, {}, limit);
    }
    if (_conversion.letter != 's') {
        return EINVAL;
    }
    Body body;
    body.digits = UpToNul(text);
    if (_conversion.hasPrecision) {
        body.digits = body.digits.substr(0, _conversion.precision);
    }
    return Append(out, body, limit);
}

int PrintfFormat::Append(std::string& out, const Body& body, std::size_t limit) const {
    if (_error != 0) {
        return _error;
    }
    const std::size_t size = body.Size();
    const std::size_t padding = _conversion.width - std::min(_conversion.width, size);
    if (_head.size() + size + padding + _tail.size() > INT_MAX) {
        return EOVERFLOW;
    }
    LimitedText limited(out, limit);
    limited.Append(_head);
    if (!_conversion.leftAligned) {
        limited.Append(padding, ' ');
    }
    limited.Append(body.prefix);
    limited.Append(body.zeros, '0');
    limited.Append(body.digits);
    if (_conversion.leftAligned) {
        limited.Append(padding, ' ');
    }
    limited.Append(_tail);
    return 0;
}

}  // namespace Corvel::AutoCli
