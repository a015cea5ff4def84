#include "corvel/autocli/plugins/DescriptorWords.h"

#include <array>
#include <cstddef>

namespace Corvel::AutoCli {
namespace {

enum class Text : bool { Ignored, Kept };

struct Entry {
    std::string_view spelling;
    Text text;
};

/// In the order of the words.
constexpr std::array<Entry, static_cast<std::size_t>(Word::Version) + 1> kWords{{
    {"", Text::Kept},
    {"", Text::Kept},
    {"bool", Text::Kept},
    {"command", Text::Ignored},
    {"commands", Text::Ignored},
    {"constraint", Text::Ignored},
    {"context-supported", Text::Kept},
    {"description", Text::Kept},
    {"enum", Text::Ignored},
    {"enum-value", Text::Kept},
    {"execute", Text::Kept},
    {"field", Text::Ignored},
    {"format-parameter", Text::Kept},
    {"format-parameters", Text::Ignored},
    {"formatter", Text::Kept},
    {"input-spec", Text::Ignored},
    {"int", Text::Kept},
    {"list", Text::Ignored},
    {"max", Text::Kept},
    {"meta-data", Text::Ignored},
    {"meta-data-entry", Text::Kept},
    {"min", Text::Kept},
    {"name", Text::Kept},
    {"namespace", Text::Ignored},
    {"namespaces", Text::Ignored},
    {"output-spec", Text::Ignored},
    {"parameter", Text::Ignored},
    {"path", Text::Kept},
    {"range", Text::Ignored},
    {"regex", Text::Kept},
    {"required", Text::Kept},
    {"secret", Text::Kept},
    {"shortname", Text::Kept},
    {"stdin", Text::Kept},
    {"string", Text::Kept},
    {"structure", Text::Ignored},
    {"type", Text::Kept},
    {"typeName", Text::Kept},
    {"value", Text::Kept},
    {"version", Text::Kept},
}};

constexpr std::size_t kSlots = 128;

/// @param spelling  not empty.
constexpr std::size_t SlotOf(std::string_view spelling) {
    const auto number = [spelling](std::size_t place) {
        return static_cast<std::size_t>(static_cast<unsigned char>(spelling[place]));
    };
    return (spelling.size() * 5 + number(spelling.size() / 2) * 60 + number(0)) % kSlots;
}

/// Each word in its slot, and None in the others.
constexpr std::array<Word, kSlots> MakeSlots() {
    std::array<Word, kSlots> slots{};
    for (std::size_t word = 0; word < kWords.size(); ++word) {
        if (!kWords[word].spelling.empty()) {
            slots[SlotOf(kWords[word].spelling)] = static_cast<Word>(word);
        }
    }
    return slots;
}

constexpr std::array<Word, kSlots> kSlotWords = MakeSlots();

constexpr bool HaveAllWordsTheirOwnSlots() {
    for (std::size_t word = 0; word < kWords.size(); ++word) {
        const std::string_view spelling = kWords[word].spelling;
        if (!spelling.empty() && kSlotWords[SlotOf(spelling)] != static_cast<Word>(word)) {
            return false;
        }
    }
    return true;
}
static_assert(HaveAllWordsTheirOwnSlots(), "find other factors in SlotOf()");

}  // namespace

Word WordOf(std::string_view spelling) {
    if (spelling.empty()) {
        return Word::Other;
    }
    const Word word = kSlotWords[SlotOf(spelling)];
    return word != Word::None && SpellingOf(word) == spelling ? word : Word::Other;
}

std::string_view SpellingOf(Word word) {
    return kWords[static_cast<std::size_t>(word)].spelling;
}

bool HoldsElementsOnly(Word word) {
    return kWords[static_cast<std::size_t>(word)].text == Text::Ignored;
}

}  // namespace Corvel::AutoCli
