#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "corvel/autocli/plugins/DescriptorWords.h"

/// How an XmlTree lies in memory, one row of bytes:
///
///   element   word (1 byte), size of its body (4), body
///   body      where the word is Other: the name and a zero; then attributes, a zero, and texts and
///             elements in the order of the document
///   attribute word (1), length, value
///   text      None (1), length, text
///   length    1 byte, or 255 and 4 bytes
///
/// None is zero, so that it ends the attributes and tells a text from an element.
namespace Corvel::AutoCli::XmlTreeBytes {

using Size = std::uint32_t;

constexpr std::size_t kElementHead = 1 + sizeof(Size);
constexpr std::size_t kLongLength = 255;

/// An attribute or a text.
struct Piece {
    Word word;
    std::string_view text;
};

inline const char* EndOf(std::string_view text) {
    return text.data() + text.size();
}

inline Word WordAt(const char* at) {
    return static_cast<Word>(*at);
}

inline Size SizeAt(const char* at) {
    Size size = 0;
    std::memcpy(&size, at, sizeof(size));
    return size;
}

inline std::string_view BodyOf(const char* element) {
    return {element + kElementHead, SizeAt(element + 1)};
}

inline Piece PieceAt(const char* at) {
    const std::size_t length = static_cast<unsigned char>(at[1]);
    return length == kLongLength ? Piece{WordAt(at), {at + 2 + sizeof(Size), SizeAt(at + 2)}}
                                 : Piece{WordAt(at), {at + 2, length}};
}

inline const char* AttributesOf(const char* element) {
    const char* body = element + kElementHead;
    return WordAt(element) == Word::Other ? body + std::strlen(body) + 1 : body;
}

/// @return where the texts and elements in an element begin.
inline const char* ContentOf(const char* element) {
    const char* at = AttributesOf(element);
    while (WordAt(at) != Word::None) {
        at = EndOf(PieceAt(at).text);
    }
    return at + 1;
}

}  // namespace Corvel::AutoCli::XmlTreeBytes
