#pragma once

#include <cstdint>
#include <string_view>

namespace Corvel::AutoCli {

/// The names of elements and attributes that mean something in a descriptor.
enum class Word : std::uint8_t {
    None,   ///< no word at all
    Other,  ///< one that means nothing

    // Elements that are there for the elements in them alone.
    Command,
    Commands,
    Constraint,
    Enum,
    Field,
    FormatParameters,
    InputSpec,
    List,
    MetaData,
    Namespace,
    Namespaces,
    OutputSpec,
    Parameter,
    Range,
    Structure,

    // Elements with a text.
    Bool,
    ContextSupported,
    Description,
    EnumValue,
    Execute,
    FormatParameter,
    Formatter,
    Int,
    MetaDataEntry,
    Regex,
    Stdin,
    String,
    Version,

    // Attributes.
    Max,
    Min,
    Name,
    Path,
    Required,
    Secret,
    ShortName,
    Type,
    TypeName,
    Value,
};

/// @return the word that is spelled so, Other when there is none.
Word WordOf(std::string_view spelling);

/// @return how the word is spelled; empty for None and Other.
std::string_view SpellingOf(Word word);

/// Whether text that stands directly in an element of that name is never asked for.
constexpr bool HoldsElementsOnly(Word word) {
    return word >= Word::Command && word <= Word::Structure;
}

}  // namespace Corvel::AutoCli
