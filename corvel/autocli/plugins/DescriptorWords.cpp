#include "corvel/autocli/plugins/DescriptorWords.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace Corvel::AutoCli {
namespace {

/// In the order of the words.
constexpr std::array<std::string_view, static_cast<std::size_t>(Word::Value) + 1> kSpellings = {
    "",
    "",
    "command",
    "commands",
    "constraint",
    "enum",
    "field",
    "format-parameters",
    "input-spec",
    "list",
    "meta-data",
    "namespace",
    "namespaces",
    "output-spec",
    "parameter",
    "range",
    "structure",
    "bool",
    "context-supported",
    "description",
    "enum-value",
    "execute",
    "format-parameter",
    "formatter",
    "int",
    "meta-data-entry",
    "regex",
    "stdin",
    "string",
    "version",
    "max",
    "min",
    "name",
    "path",
    "required",
    "secret",
    "shortname",
    "type",
    "typeName",
    "value",
};

/// A spelling as numbers, which takes less time to compare than the text. No two spellings of up to
/// 16 characters have the same.
struct Key {
    std::uint64_t head = 0;
    std::uint64_t tail = 0;
    std::size_t size = 0;

    friend constexpr bool operator==(const Key&, const Key&) = default;
};

/// The bytes as a number, the first of them the lowest on every machine.
template <typename Number>
constexpr std::uint64_t Load(const char* bytes) {
    Number number = 0;
    if (std::is_constant_evaluated() || std::endian::native != std::endian::little) {
        for (std::size_t i = sizeof(Number); i-- != 0;) {
            number = static_cast<Number>((number << 8) | static_cast<unsigned char>(bytes[i]));
        }
    } else {
        std::memcpy(&number, bytes, sizeof(number));
    }
    return number;
}

/// Both ends of the spelling, which meet or overlap up to 16 characters.
constexpr Key KeyOf(std::string_view spelling) {
    const char* begin = spelling.data();
    const std::size_t size = spelling.size();
    if (size >= 8) {
        return {Load<std::uint64_t>(begin), Load<std::uint64_t>(begin + size - 8), size};
    }
    if (size >= 4) {
        return {Load<std::uint32_t>(begin), Load<std::uint32_t>(begin + size - 4), size};
    }
    if (size >= 2) {
        return {Load<std::uint16_t>(begin), Load<std::uint16_t>(begin + size - 2), size};
    }
    return {size == 0 ? 0U : Load<std::uint8_t>(begin), 0, size};
}

struct Slot {
    Key key;
    Word word = Word::Other;
};

constexpr std::size_t kSlotBits = 7;

constexpr std::size_t SlotOf(const Key& key) {
    return ((key.head + key.tail) * 0xac738c8ca5be6d6bU) >> (64 - kSlotBits);
}

/// Each word in its slot.
constexpr std::array<Slot, std::size_t{1} << kSlotBits> MakeSlots() {
    std::array<Slot, std::size_t{1} << kSlotBits> slots{};
    for (std::size_t word = 0; word < kSpellings.size(); ++word) {
        if (!kSpellings[word].empty()) {
            const Key key = KeyOf(kSpellings[word]);
            slots[SlotOf(key)] = {key, static_cast<Word>(word)};
        }
    }
    return slots;
}

constexpr auto kSlots = MakeSlots();

constexpr bool HaveAllWordsTheirOwnSlots() {
    for (std::size_t word = 0; word < kSpellings.size(); ++word) {
        const std::string_view spelling = kSpellings[word];
        if (!spelling.empty() && kSlots[SlotOf(KeyOf(spelling))].word != static_cast<Word>(word)) {
            return false;
        }
    }
    return true;
}
static_assert(HaveAllWordsTheirOwnSlots(), "find another factor for SlotOf()");

constexpr std::size_t kLongestExactKey = 16;

}  // namespace

Word WordOf(std::string_view spelling) {
    const Key key = KeyOf(spelling);
    const Slot& slot = kSlots[SlotOf(key)];
    if (slot.key != key || (key.size > kLongestExactKey && SpellingOf(slot.word) != spelling)) {
        return Word::Other;
    }
    return slot.word;
}

std::string_view SpellingOf(Word word) {
    return kSpellings[static_cast<std::size_t>(word)];
}

}  // namespace Corvel::AutoCli
