#pragma once

#include <cstddef>
#include <string_view>

#include "corvel/autocli/formatters/Decimal.h"
#include "corvel/autocli/formatters/EscapeScan.h"
#include "corvel/autocli/formatters/EscapeTable.h"
#include "corvel/autocli/formatters/TextBuffer.h"

namespace Corvel::AutoCli {

/// Scalars, written where the end of a text buffer has room for kScalarRoom bytes. Each function
/// returns where the scalar ends, with room for kRoomBehind bytes there: whoever asks for that room
/// once for what stands before a scalar, the scalar and what stands behind it, need not ask again.

/// What stands behind a scalar at most.
constexpr std::size_t kRoomBehind = 16;
constexpr std::size_t kShortText = 64;
constexpr std::size_t kScalarRoom = kShortText * EscapeTable::kLongest + 2 * kRoomBehind;

/// One of two words of at most 8 bytes.
inline char* PutBool(char* at, bool value, std::string_view yes, std::string_view no) {
    return value ? Put(at, yes) : Put(at, no);
}

/// A text as the table escapes it.
template <const EscapeTable& kTable>
char* PutText(TextBuffer& out, char* at, std::string_view text) {
    if (text.size() <= kShortText) {
        return PutEscaped<kTable>(at, text);
    }
    out.EndAt(at);
    AppendEscaped<kTable>(out, text);
    return out.Room(kRoomBehind);
}

/// A text as it is.
inline char* PutText(TextBuffer& out, char* at, std::string_view text) {
    if (text.size() <= kShortText) {
        return PutShort(at, text);
    }
    out.EndAt(at);
    out += text;
    return out.Room(kRoomBehind);
}

}  // namespace Corvel::AutoCli
