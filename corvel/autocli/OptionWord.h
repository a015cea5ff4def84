#pragma once

#include <optional>
#include <string_view>

namespace Corvel::AutoCli {

/// An option as it stands in one word of a command line, without its dashes. Points into the word.
struct OptionWord {
    std::string_view name;
    std::optional<std::string_view> value;
};

/// Takes an option apart in linear time. An option is what matches, as a whole, one of
///   -[a-zA-Z]
///   --[a-zA-Z][a-zA-Z0-9-]+
///   --[a-zA-Z][a-zA-Z0-9-]+=.+     where a dot stands for any character
/// @return nothing for any other word.
std::optional<OptionWord> ReadOptionWord(std::string_view word);

}  // namespace Corvel::AutoCli
