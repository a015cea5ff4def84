#pragma once

#include <cstdint>
#include <string_view>

namespace Corvel::AutoCli {

/// The names of elements and attributes that mean something in a descriptor.
enum class Word : std::uint8_t {
    None,   ///< no word at all
    Other,  ///< one that means nothing
    Bool,
    Command,
    Commands,
    Constraint,
    ContextSupported,
    Description,
    Enum,
    EnumValue,
    Execute,
    Field,
    FormatParameter,
    FormatParameters,
    Formatter,
    InputSpec,
    Int,
    List,
    Max,
    MetaData,
    MetaDataEntry,
    Min,
    Name,
    Namespace,
    Namespaces,
    OutputSpec,
    Parameter,
    Path,
    Range,
    Regex,
    Required,
    Secret,
    ShortName,
    Stdin,
    String,
    Structure,
    Type,
    TypeName,
    Value,
    Version,
};

/// @return the word that is spelled so, Other when there is none.
Word WordOf(std::string_view spelling);

/// @return how the word is spelled; empty for None and Other.
std::string_view SpellingOf(Word word);

/// Whether an element of that name is there for the elements in it alone: text that stands directly
/// in it is never asked for.
bool HoldsElementsOnly(Word word);

}  // namespace Corvel::AutoCli
