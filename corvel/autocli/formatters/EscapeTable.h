#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string_view>

namespace Corvel::AutoCli {

/// Which bytes of a text are replaced, and by what. Built by the compiler.
class EscapeTable {
public:
    struct Rule {
        unsigned char byte;
        std::string_view replacement;
    };
    /// The longest replacement.
    static constexpr std::size_t kLongest = 6;

    constexpr EscapeTable(std::initializer_list<Rule> rules) {
        for (const Rule& rule : rules) {
            Replace(rule.byte, rule.replacement);
        }
    }

    /// @param replacement  of 1 to kLongest bytes.
    constexpr void Replace(unsigned char byte, std::string_view replacement) {
        _lengths[byte] = static_cast<std::uint8_t>(replacement.size());
        for (std::size_t i = 0; i < replacement.size(); ++i) {
            _replacements[byte].at(i) = replacement[i];
        }
    }

    constexpr bool Replaces(unsigned char byte) const { return _lengths[byte] != 0; }

    /// Writes the replacement of a byte to where there is room for 8 bytes. @return where it ends.
    char* Put(char* at, unsigned char byte) const {
        std::memcpy(at, _replacements[byte].data(), sizeof _replacements[byte]);
        return at + _lengths[byte];
    }

private:
    std::array<std::uint8_t, 256> _lengths{};
    std::array<std::array<char, 8>, 256> _replacements{};
};

}  // namespace Corvel::AutoCli
