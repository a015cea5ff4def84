#include <cstddef>
#include <stdexcept>
#include <string_view>

#include "fuzz/formatters/ReadBack.h"
#include "fuzz/support/ValueDump.h"

namespace Corvel::Fuzz {

namespace {

/// Reads from left to right; throws where the grammar is broken.
class JsonReader {
public:
    explicit JsonReader(std::string_view text) : _text(text) {}

    std::string ReadDocument() {
        std::string dump = ReadValue();
        Require(_at == _text.size());
        return dump;
    }
    std::size_t At() const { return _at; }

private:
    static void Require(bool holds) {
        if (!holds) {
            throw std::runtime_error("no JSON");
        }
    }
    char Peek() const { return _at < _text.size() ? _text[_at] : '\0'; }
    bool Take(std::string_view expected) {
        const bool stands = _text.substr(_at, expected.size()) == expected;
        _at += stands ? expected.size() : 0;
        return stands;
    }
    void SkipBlanks() { _at = std::min(_text.find_first_not_of(" \t\n\r", _at), _text.size()); }

    std::string ReadValue() {
        SkipBlanks();
        std::string dump = ReadBareValue();
        SkipBlanks();
        return dump;
    }

    std::string ReadBareValue() {
        if (Take("null")) {
            return "n";
        }
        if (Take("true")) {
            return "b1";
        }
        if (Take("false")) {
            return "b0";
        }
        if (Take("\"")) {
            return "s" + ToHex(ReadString());
        }
        if (Take("{")) {
            return ReadMembers();
        }
        return Take("[") ? ReadItems() : "i" + ReadInteger();
    }

    std::string ReadMembers() {
        std::string dump = "{";
        SkipBlanks();
        while (!Take("}")) {
            Require(dump == "{" || Take(","));
            SkipBlanks();
            Require(Take("\""));
            dump.append(dump == "{" ? "" : ",").append(ToHex(ReadString()));
            SkipBlanks();
            Require(Take(":"));
            dump.append(":").append(ReadValue());
        }
        return dump + "}";
    }

    std::string ReadItems() {
        std::string dump = "[";
        SkipBlanks();
        while (!Take("]")) {
            Require(dump == "[" || Take(","));
            dump.append(dump == "[" ? "" : ",");
            dump.append(ReadValue());
        }
        return dump + "]";
    }

    std::string ReadInteger() {
        const std::size_t begin = _at;
        Take("-");
        const std::size_t digits = _at;
        while (Peek() >= '0' && Peek() <= '9') {
            ++_at;
        }
        Require(_at > digits && (_text[digits] != '0' || _at == digits + 1));
        return std::string(_text.substr(begin, _at - begin));
    }

    std::string ReadString() {
        std::string text;
        while (!Take("\"")) {
            Require(_at < _text.size() && static_cast<unsigned char>(Peek()) >= 0x20);
            text += Take("\\") ? ReadEscape() : _text[_at++];
        }
        return text;
    }

    char ReadEscape() {
        constexpr std::string_view kLetters = "\"\\/bfnrt";
        constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
        if (Take("u00")) {
            const auto high = static_cast<unsigned>(ReadHexDigit());
            return static_cast<char>((high << 4U) | static_cast<unsigned>(ReadHexDigit()));
        }
        const std::size_t letter = _at < _text.size() ? kLetters.find(Peek()) : std::string::npos;
        Require(letter != std::string::npos);
        ++_at;
        return kMeanings[letter];
    }

    std::size_t ReadHexDigit() {
        const std::size_t digit = std::string_view("0123456789abcdef").find(Peek());
        Require(digit != std::string::npos && _at < _text.size());
        ++_at;
        return digit;
    }

    std::string_view _text;
    std::size_t _at = 0;
};

}  // namespace

std::string ReadJson(const std::string& text) {
    JsonReader reader(text);
    try {
        return reader.ReadDocument();
    } catch (const std::runtime_error&) {
        return "broken at " + std::to_string(reader.At());
    }
}

}  // namespace Corvel::Fuzz
