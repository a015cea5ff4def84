#include "corvel/autocli/plugins/ShellGuard.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "corvel/autocli/plugins/ShellInterpreters.h"
#include "corvel/autocli/plugins/ShellLexer.h"
#include "corvel/metaobj/CorvelException.h"

namespace Corvel::AutoCli {

namespace {

/// Stands for every value in the line that the actual one is held against: a byte without any
/// meaning to a shell, not even as part of a name or number.
constexpr char kHarmless = '%';

bool IsSafeAnywhere(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           (c != '\0' && std::string_view("_.,:/@+=-%").find(c) != std::string_view::npos);
}

/// What stands in one place of the line: text of the template, or of a value.
struct Piece {
    std::string_view text;
    /// Whose value it is; empty for text of the template.
    std::string_view parameter;

    bool IsValue() const { return !parameter.empty(); }
};

std::vector<Piece> Pieces(const TemplateText& line) {
    std::vector<Piece> pieces;
    const std::string_view characters = line.Characters();
    std::size_t done = 0;
    for (std::size_t i = characters.find(TemplateText::kPlaceholder); i != std::string_view::npos;
         i = characters.find(TemplateText::kPlaceholder, i + 1)) {
        if (const InsertedValue* value = line.ValueAt(i)) {
            pieces.push_back({characters.substr(done, i - done), {}});
            for (const InsertedValue::Piece& piece : value->Pieces()) {
                pieces.push_back({piece.text, piece.parameter});
            }
            done = i + 1;
        }
    }
    pieces.push_back({characters.substr(done), {}});
    return pieces;
}

/// What the shell makes of one byte, as far as two lines can be held against each other.
struct Meaning {
    ShellRole role;
    ShellPlace place;
    bool isDoubtful;

    bool operator==(const Meaning&) const = default;
};

class Reading {
public:
    explicit Reading(std::string_view line) : _line(ReadShellLine(line)) {
        MarkInterpretedWords(_line);
    }

    Meaning At(std::size_t position) const {
        const ShellByte& byte = _line.bytes[position];
        if (byte.word == ShellByte::kNoWord) {
            return {byte.role, ShellPlace::None, byte.isDoubtful};
        }
        const ShellWord& word = _line.words[byte.word];
        // A line end that disappears is part of no word, even if it stands in the middle of one.
        const bool isPart = byte.role != ShellRole::Continuation;
        return {byte.role, isPart ? word.place : ShellPlace::None, byte.isDoubtful || word.isCode};
    }

    /// Whether the byte is safe there, should what stands there be code to a command.
    bool IsSafe(char c, std::size_t position) const {
        const std::uint32_t word = _line.bytes[position].word;
        return word == ShellByte::kNoWord || !_line.words[word].mayBeCode || IsSafeAnywhere(c);
    }

    std::size_t CommandCount() const { return _line.feeders.size(); }

private:
    ShellLine _line;
};

/// Whether what stands here may be split into words, of which all but the first are arguments.
bool MayBeSplit(ShellPlace place) {
    return place == ShellPlace::Argument || place == ShellPlace::Command ||
           place == ShellPlace::Target;
}

bool IsPlaceFor(ShellPlace harmless, ShellPlace place) {
    return place == harmless || (place == ShellPlace::Argument && MayBeSplit(harmless)) ||
           (place == ShellPlace::Operand && harmless == ShellPlace::Command);
}

/// @param harmless  what stands here when the value is harmless.
bool IsData(char c, const Meaning& meaning, const Meaning& harmless) {
    if (meaning.isDoubtful != harmless.isDoubtful || (meaning.isDoubtful && !IsSafeAnywhere(c)) ||
        harmless.place == ShellPlace::Delimiter) {
        return false;
    }
    switch (meaning.role) {
        case ShellRole::Data:
        case ShellRole::Escape:
            return IsPlaceFor(harmless.place, meaning.place);
        case ShellRole::Continuation:
            return true;
        case ShellRole::Blank:
            return MayBeSplit(harmless.place);
        case ShellRole::Comment:
            return harmless.role == ShellRole::Comment;
        case ShellRole::Operator:
        case ShellRole::OperatorTail:
        case ShellRole::Quote:
        case ShellRole::Expansion:
        case ShellRole::Tilde:
            break;
    }
    return false;
}

/// A line and its harmless counterpart, piece by piece.
class Comparison {
public:
    explicit Comparison(const std::vector<Piece>& pieces)
        : _pieces(pieces), _actual(Text(pieces, false)), _harmless(Text(pieces, true)) {}

    /// @return the name of the first parameter whose value is unsafe; empty when there is none.
    std::string_view FindUnsafe() const {
        std::string_view last;
        Place place;
        for (std::size_t i = 0; i < _pieces.size(); ++i) {
            const Piece& piece = _pieces[i];
            if (piece.IsValue()) {
                last = piece.parameter;
                if (!HoldsData(piece, place)) {
                    return last;
                }
            } else if (const std::size_t kept = KeptBytes(piece, place); kept < piece.text.size()) {
                const bool isLastByte = kept + 1 == piece.text.size();
                const bool isByNext = isLastByte && i + 1 < _pieces.size() &&
                                      !HoldsData(_pieces[i + 1], Behind(piece, place));
                return isByNext || last.empty() ? ValueFrom(i) : last;
            }
            place = Behind(piece, place);
        }
        return _actual.CommandCount() == _harmless.CommandCount() ? std::string_view() : last;
    }

private:
    struct Place {
        std::size_t actual = 0;
        std::size_t harmless = 0;
    };

    static std::string Text(const std::vector<Piece>& pieces, bool isHarmless) {
        std::string text;
        for (const Piece& piece : pieces) {
            if (piece.IsValue() && isHarmless) {
                text += kHarmless;
            } else {
                text += piece.text;
            }
        }
        return text;
    }

    static Place Behind(const Piece& piece, const Place& place) {
        const std::size_t size = piece.text.size();
        return {place.actual + size, place.harmless + (piece.IsValue() ? 1 : size)};
    }

    bool HoldsData(const Piece& piece, const Place& place) const {
        const Meaning harmless = _harmless.At(place.harmless);
        for (std::size_t i = 0; i < piece.text.size(); ++i) {
            const std::size_t position = place.actual + i;
            if (!_actual.IsSafe(piece.text[i], position) ||
                !IsData(piece.text[i], _actual.At(position), harmless)) {
                return false;
            }
        }
        return true;
    }

    /// @return how many bytes of a template's text mean what they mean beside harmless values.
    std::size_t KeptBytes(const Piece& piece, const Place& place) const {
        std::size_t i = 0;
        while (i < piece.text.size() &&
               _actual.At(place.actual + i) == _harmless.At(place.harmless + i)) {
            ++i;
        }
        return i;
    }

    /// @return whose value is the next one.
    std::string_view ValueFrom(std::size_t i) const {
        while (!_pieces[i].IsValue()) {
            ++i;
        }
        return _pieces[i].parameter;
    }

    const std::vector<Piece>& _pieces;
    const Reading _actual;
    const Reading _harmless;
};

}  // namespace

void RefuseUnsafeValues(const TemplateText& line) {
    const std::vector<Piece> pieces = Pieces(line);
    if (std::none_of(pieces.begin(), pieces.end(), std::mem_fn(&Piece::IsValue))) {
        return;
    }
    const std::string_view name = Comparison(pieces).FindUnsafe();
    if (!name.empty()) {
        throw CorvelException("Unsafe value for parameter '" + std::string(name) +
                              "': it would be read by the shell as code, not as data.");
    }
}

}  // namespace Corvel::AutoCli
