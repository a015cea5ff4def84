#include "fuzz/shell_guard/Reference.h"

#include <cstddef>
#include <optional>

namespace Corvel::Fuzz {

namespace {

bool IsOneOf(std::string_view characters, char c) {
    return c != '\0' && characters.find(c) != std::string_view::npos;
}

bool BeginsExpansion(char behindDollar, bool isQuoted) {
    constexpr std::string_view kNames =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
    return IsOneOf(kNames, behindDollar) || IsOneOf("@*#?-$!{([", behindDollar) ||
           (!isQuoted && IsOneOf("'\"", behindDollar));
}

class PlainReader {
public:
    explicit PlainReader(std::string_view line) : _line(line) {}

    PlainReading Run() {
        while (_reading.isWhole && HasAhead(0)) {
            ReadUnquoted(At(0));
        }
        EndWord();
        return _reading;
    }

private:
    std::size_t Position() const { return _reading.roles.size(); }
    bool HasAhead(std::size_t ahead) const { return Position() + ahead < _line.size(); }
    char At(std::size_t ahead) const { return HasAhead(ahead) ? _line[Position() + ahead] : '\0'; }
    char Before() const { return Position() > 0 ? _line[Position() - 1] : '\0'; }

    void Stop() { _reading.isWhole = false; }

    void Say(char role) { _reading.roles += role; }

    void SayOfWord(char role) {
        _word = _word.value_or("");
        if (role != 'q' && role != 'e') {
            *_word += At(0);
        }
        Say(role);
    }

    void EndWord() {
        if (_word) {
            _reading.words.push_back(*_word);
            if (!_isBehindName) {
                _reading.names.push_back(*_word);
            }
            _isBehindName = true;
        }
        _word.reset();
    }

    void ReadUnquoted(char c) {
        if (c == '\0' || IsOneOf("()<>`", c) || (c == ';' && IsOneOf(";&|", At(1))) ||
            (c == '$' && BeginsExpansion(At(1), false))) {
            Stop();
        } else if (IsOneOf(" \t", c)) {
            EndWord();
            Say('b');
        } else if (IsOneOf("\n;&|", c)) {
            EndWord();
            _isBehindName = false;
            Say(IsJoinedWith(c) ? 't' : 'o');
        } else if (c == '\\') {
            ReadBackslash();
        } else if (c == '\'') {
            ReadSingleQuotes();
        } else if (c == '"') {
            ReadDoubleQuotes();
        } else if (c == '#') {
            ReadNumberSign();
        } else {
            const bool isHome = c == '~' && (!_word || IsOneOf(" :=", Before()));
            SayOfWord(isHome ? '~' : 'd');
        }
    }

    void ReadBackslash() {
        if (At(1) == '\n') {
            ReadContinuation();
        } else if (HasAhead(1)) {
            SayOfWord('e');
            SayOfWord('d');
        } else {
            SayOfWord('d');
        }
    }

    bool IsBehindOperator() const {
        return !_reading.roles.empty() && IsOneOf("ot", _reading.roles.back());
    }

    bool IsJoinedWith(char c) const {
        constexpr std::string_view kOperators = "&& || |& ;; ;& ;|";
        return IsBehindOperator() && c != ' ' &&
               kOperators.find(std::string{Before(), c}) != std::string_view::npos;
    }

    /// Whether $, < or > and what follows are joined over it differs from shell to shell, and whether
    /// two operators are.
    void ReadContinuation() {
        std::size_t behind = 0;
        while (At(behind) == '\\' && At(behind + 1) == '\n') {
            behind += 2;
        }
        if (IsOneOf("$<>", Before()) || IsJoinedWith(At(behind))) {
            Stop();
        } else {
            _reading.roles += "cc";
        }
    }

    void ReadSingleQuotes() {
        SayOfWord('q');
        while (HasAhead(0) && At(0) != '\'') {
            SayOfWord('d');
        }
        if (HasAhead(0)) {
            SayOfWord('q');
        }
    }

    void ReadDoubleQuotes() {
        SayOfWord('q');
        while (_reading.isWhole && HasAhead(0) && At(0) != '"') {
            ReadInDoubleQuotes(At(0));
        }
        if (_reading.isWhole && HasAhead(0)) {
            SayOfWord('q');
        }
    }

    void ReadInDoubleQuotes(char c) {
        if (c == '\0' || c == '`' || (c == '$' && BeginsExpansion(At(1), true))) {
            Stop();
        } else if (c == '\\' && At(1) == '\n') {
            ReadContinuation();
        } else if (c == '\\' && IsOneOf("$`\"\\", At(1))) {
            SayOfWord('e');
            SayOfWord('d');
        } else {
            SayOfWord('d');
        }
    }

    void ReadNumberSign() {
        const auto before = static_cast<unsigned char>(Before());
        if (!_reading.roles.empty() && _reading.roles.back() == 'c') {
            Stop();  // a comment to some shells
        } else if (_word) {
            SayOfWord(before <= ' ' || before >= 0x7f ? 'h' : 'd');
        } else {
            while (HasAhead(0) && At(0) != '\n') {
                Say('#');
            }
        }
    }

    const std::string_view _line;
    PlainReading _reading;
    std::optional<std::string> _word;
    bool _isBehindName = false;
};

bool IsData(char role, char harmless) {
    return IsOneOf("dceb", role) || (role == '#' && harmless == '#');
}

/// Whether the bytes were read, and every one has a role that suits.
template <typename Suits>
bool Suit(const PlainReading& reading, std::size_t begin, std::size_t size, Suits suits) {
    for (std::size_t i = 0; i < size; ++i) {
        if (begin + i >= reading.roles.size() || !suits(i, reading.roles[begin + i])) {
            return false;
        }
    }
    return true;
}

}  // namespace

PlainReading ReadPlainLine(std::string_view line) {
    return PlainReader(line).Run();
}

std::string LineOf(const std::vector<LinePart>& parts, bool isHarmless) {
    std::string line;
    for (const LinePart& part : parts) {
        line += part.isValue && isHarmless ? "%" : part.text;
    }
    return line;
}

bool HoldsValuesAsData(const std::vector<LinePart>& parts,
                       const PlainReading& actual,
                       const PlainReading& harmless) {
    std::size_t at = 0;
    std::size_t atHarmless = 0;
    for (const LinePart& part : parts) {
        const std::size_t size = part.text.size();
        const bool isSuitable = part.isValue
                                    ? Suit(actual,
                                           at,
                                           size,
                                           [&](std::size_t /*i*/, char role) {
                                               return IsData(role, harmless.roles[atHarmless]);
                                           })
                                    : Suit(actual, at, size, [&](std::size_t i, char role) {
                                          return role == harmless.roles[atHarmless + i];
                                      });
        if (!isSuitable) {
            return false;
        }
        at += size;
        atHarmless += part.isValue ? 1 : size;
    }
    return true;
}

}  // namespace Corvel::Fuzz
