#include "fuzz/names/Reference.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "fuzz/support/ValueDump.h"

namespace Corvel::Fuzz {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsSmall(char c) {
    return (c >= 'a' && c <= 'z') || IsDigit(c);
}

bool IsLarge(char c) {
    return (c >= 'A' && c <= 'Z') || IsDigit(c);
}

char Byte(std::uint32_t bits) {
    return static_cast<char>(static_cast<unsigned char>(bits));
}

std::string Encode(std::uint32_t point) {
    if (point < 0x80) {
        return {Byte(point)};
    }
    if (point < 0x800) {
        return {Byte(0xC0 | (point >> 6U)), Byte(0x80 | (point & 0x3FU))};
    }
    if (point < 0x10000) {
        return {Byte(0xE0 | (point >> 12U)),
                Byte(0x80 | ((point >> 6U) & 0x3FU)),
                Byte(0x80 | (point & 0x3FU))};
    }
    return {Byte(0xF0 | (point >> 18U)),
            Byte(0x80 | ((point >> 12U) & 0x3FU)),
            Byte(0x80 | ((point >> 6U) & 0x3FU)),
            Byte(0x80 | (point & 0x3FU))};
}

/// What so many bytes would mean if they were a character: their payload bits, one after the other.
std::uint32_t Decode(const std::string& bytes) {
    if (bytes.size() == 1) {
        return static_cast<unsigned char>(bytes[0]);
    }
    std::uint32_t point = static_cast<unsigned char>(bytes[0]) & (0x7FU >> bytes.size());
    for (std::size_t i = 1; i < bytes.size(); ++i) {
        point = (point << 6U) | (static_cast<unsigned char>(bytes[i]) & 0x3FU);
    }
    return point;
}

/// Bytes are a character when writing it gives them again. Surrogates are none.
bool IsCharacter(const std::string& bytes) {
    const std::uint32_t point = Decode(bytes);
    const bool isScalar = point < 0xD800 || (point > 0xDFFF && point <= 0x10FFFF);
    return isScalar && Encode(point) == bytes;
}

}  // namespace

bool IsCamelCase(const std::string& name) {
    const std::size_t size = name.size();
    // Whether the first so many characters can be parted.
    std::vector<bool> canPart(size + 1, false);
    canPart[0] = true;
    for (std::size_t begin = 0; begin < size; ++begin) {
        for (std::size_t end = begin + 1; canPart[begin] && end <= size && IsSmall(name[end - 1]);
             ++end) {
            canPart[end] = true;
            if (end < size && IsLarge(name[end])) {
                canPart[end + 1] = true;
            }
        }
    }
    return size > 0 && canPart[size];
}

std::vector<Piece> SplitCharacters(const std::string& text) {
    std::vector<Piece> pieces;
    for (std::size_t at = 0; at < text.size();) {
        Piece piece{text.substr(at, 1)};
        for (std::size_t size = 1; size <= std::min<std::size_t>(4, text.size() - at); ++size) {
            if (IsCharacter(text.substr(at, size))) {
                piece = {text.substr(at, size), true};
            }
        }
        at += piece.bytes.size();
        pieces.push_back(piece);
    }
    return pieces;
}

std::string Escaped(const std::vector<Piece>& pieces) {
    std::string text;
    for (const Piece& piece : pieces) {
        text += piece.isCharacter ? piece.bytes : "\\x" + ToHex(piece.bytes);
    }
    return text;
}

}  // namespace Corvel::Fuzz
