#pragma once

#include <string>
#include <vector>

namespace Corvel::Fuzz {

/// Whether a namespace or a command may have the name, found by trying every way to part it into
/// small letters and digits with at most one large letter or digit behind each stretch.
bool IsCamelCase(const std::string& name);

/// A text in pieces: each is one well-formed UTF-8 character or one stray byte.
struct Piece {
    std::string bytes;
    bool isCharacter = false;
};

/// Takes a text apart by writing each possible code point as UTF-8 and comparing.
std::vector<Piece> SplitCharacters(const std::string& text);

/// The pieces, the stray bytes written as \xHH.
std::string Escaped(const std::vector<Piece>& pieces);

}  // namespace Corvel::Fuzz
