#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace Corvel::AutoCli {

/// Which bytes of a text are replaced, and by what. Built by the compiler.
class EscapeTable {
public:
    struct Rule {
        unsigned char byte;
        std::string_view replacement;
    };

    constexpr EscapeTable(std::initializer_list<Rule> rules) {
        for (const Rule& rule : rules) {
            Replace(rule.byte, rule.replacement);
        }
    }

    /// @param replacement  of 1 to 6 bytes.
    constexpr void Replace(unsigned char byte, std::string_view replacement) {
        _lengths[byte] = static_cast<std::uint8_t>(replacement.size());
        for (std::size_t i = 0; i < replacement.size(); ++i) {
            _replacements[byte].at(i) = replacement[i];
        }
    }

    constexpr bool Replaces(unsigned char byte) const { return _lengths[byte] != 0; }

    /// Appends the text with its bytes replaced; what lies between them is copied in one piece.
    void AppendEscaped(std::string& out, std::string_view text) const {
        std::size_t copied = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const auto byte = static_cast<unsigned char>(text[i]);
            if (!Replaces(byte)) {
                continue;
            }
            out.append(text, copied, i - copied);
            out.append(_replacements[byte].data(), _lengths[byte]);
            copied = i + 1;
        }
        out.append(text, copied);
    }

private:
    // Apart from the texts, so that the bytes of a harmless run are looked up in four cache lines.
    std::array<std::uint8_t, 256> _lengths{};
    std::array<std::array<char, 6>, 256> _replacements{};
};

}  // namespace Corvel::AutoCli
