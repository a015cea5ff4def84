#include "corvel/autocli/OptionWord.h"

#include <algorithm>
#include <cstddef>

namespace Corvel::AutoCli {

namespace {

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsNameCharacter(char c) {
    return IsLetter(c) || (c >= '0' && c <= '9') || c == '-';
}

bool IsLongName(std::string_view name) {
    return name.size() >= 2 && IsLetter(name.front()) &&
           std::all_of(name.begin(), name.end(), IsNameCharacter);
}

}  // namespace

std::optional<OptionWord> ReadOptionWord(std::string_view word) {
    if (word.size() == 2 && word[0] == '-' && IsLetter(word[1])) {
        return OptionWord{word.substr(1), std::nullopt};
    }
    if (!word.starts_with("--")) {
        return std::nullopt;
    }
    word.remove_prefix(2);
    const std::size_t equals = word.find('=');
    OptionWord option{word.substr(0, equals), std::nullopt};
    if (equals != std::string_view::npos) {
        option.value = word.substr(equals + 1);
    }
    if (!IsLongName(option.name) || option.value == "") {
        return std::nullopt;
    }
    return option;
}

}  // namespace Corvel::AutoCli
