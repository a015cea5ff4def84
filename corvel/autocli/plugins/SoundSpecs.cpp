#include "corvel/autocli/plugins/SoundSpecs.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <optional>
#include <string_view>
#include <system_error>

#include "corvel/autocli/plugins/DescriptorElements.h"

namespace Corvel::AutoCli {

using CallSpec::ParameterConstraintType;
using CallSpec::ParameterType;

namespace {

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsParameterName(std::string_view name) {
    return name.size() >= 2 && std::all_of(name.begin(), name.end(), [](char c) {
               return (c >= 'a' && c <= 'z') || IsDigit(c) || c == '-';
           });
}

bool IsShortName(std::string_view name) {
    return name.empty() || (name.size() == 1 && (IsLetter(name[0]) || IsDigit(name[0])));
}

bool IsStructName(std::string_view name) {
    return !name.empty() &&
           std::all_of(name.begin(), name.end(), [](char c) { return IsLetter(c) || IsDigit(c); });
}

/// A plain number: no blanks, no plus sign, none that 64 bits cannot hold.
std::optional<long> PlainInteger(std::string_view text) {
    long number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number)
                                                                    : std::nullopt;
}

/// What must differ from each other: as many items as specifications usually have, so that each can
/// be compared with all before it.
template <typename Item>
class DifferentItems {
public:
    /// @return false for one that is there already, and when there is no more room.
    bool Add(Item item) {
        const auto end = _items.begin() + _count;
        if (_count == _items.size() || std::find(_items.begin(), end, item) != end) {
            return false;
        }
        _items[_count++] = item;
        return true;
    }

private:
    std::array<Item, 32> _items;
    std::size_t _count = 0;
};

/// The one child element of that name; none when there are more, too.
XmlElement SingleChild(XmlElement element, Word name) {
    XmlElement found;
    for (const XmlElement child : element.Children()) {
        if (child.GetWord() == name) {
            if (found) {
                return {};
            }
            found = child;
        }
    }
    return found;
}

/// @param take  is given the value of each entry, and tells whether it will do.
template <typename Take>
bool IsEnum(XmlElement constraint, const Take& take) {
    const XmlElement values = SingleChild(constraint, Word::Enum);
    if (!values) {
        return false;
    }
    for (const XmlElement entry : values.Children()) {
        const std::string_view value = entry.Attribute(Word::Value);
        if (entry.GetWord() != Word::EnumValue || value.empty() || !take(value)) {
            return false;
        }
    }
    return true;
}

bool IsStringEnum(XmlElement constraint) {
    DifferentItems<std::string_view> values;
    return IsEnum(constraint, [&values](std::string_view value) { return values.Add(value); });
}

bool IsIntEnum(XmlElement constraint) {
    DifferentItems<long> values;
    return IsEnum(constraint, [&values](std::string_view value) {
        const std::optional<long> number = PlainInteger(value);
        return number && values.Add(*number);
    });
}

bool IsRange(XmlElement constraint) {
    const XmlElement range = SingleChild(constraint, Word::Range);
    const std::optional<long> min = PlainInteger(range.Attribute(Word::Min));
    const std::optional<long> max = PlainInteger(range.Attribute(Word::Max));
    return min && max && *min <= *max;
}

bool IsText(ParameterType type) {
    return type == ParameterType::String || type == ParameterType::StringList;
}

bool IsInteger(ParameterType type) {
    return type == ParameterType::Int || type == ParameterType::IntList;
}

bool IsConstraintFor(ParameterType type, XmlElement constraint) {
    switch (ConstraintTypeOfWord(constraint.Attribute(Word::Type))
                .value_or(ParameterConstraintType::None)) {
        case ParameterConstraintType::StringEnum:
            return IsText(type) && IsStringEnum(constraint);
        case ParameterConstraintType::StringRegex:
            return IsText(type) && SingleChild(constraint, Word::Regex).HasContent();
        case ParameterConstraintType::IntEnum:
            return IsInteger(type) && IsIntEnum(constraint);
        case ParameterConstraintType::IntRange:
            return IsInteger(type) && IsRange(constraint);
        case ParameterConstraintType::None:
            return false;
    }
    return false;
}

bool IsSecret(std::string_view word, ParameterType type) {
    return word.empty() || word == "false" || (word == "true" && type == ParameterType::String);
}

bool HasSoundAttributes(XmlElement parameter, ParameterType type) {
    return IsParameterName(parameter.Attribute(Word::Name)) &&
           IsShortName(parameter.Attribute(Word::ShortName)) &&
           IsSecret(parameter.Attribute(Word::Secret), type) &&
           TruthOfWord(parameter.Attribute(Word::Required));
}

bool IsParameter(XmlElement parameter) {
    const std::optional<ParameterType> type = ParameterTypeOfWord(parameter.Attribute(Word::Type));
    if (!type || !HasSoundAttributes(parameter, *type)) {
        return false;
    }
    bool isDescribed = false;
    bool isConstrained = false;
    for (const XmlElement child : parameter.Children()) {
        if (child.GetWord() == Word::Description) {
            if (isDescribed || !child.HasContent()) {
                return false;
            }
            isDescribed = true;
        } else if (child.GetWord() == Word::Constraint) {
            if (isConstrained || !IsConstraintFor(*type, child)) {
                return false;
            }
            isConstrained = true;
        }
    }
    return isDescribed;
}

/// @param depth  how many levels of elements may still follow. There are no deeper ones in a file,
///               but there may be in what a host has made.
bool IsValue(XmlElement value, int depth);

bool IsStructure(XmlElement structure, int depth) {
    if (!IsStructName(structure.Attribute(Word::TypeName))) {
        return false;
    }
    for (const XmlElement field : structure.Children()) {
        if (field.GetWord() != Word::Field) {
            continue;
        }
        const XmlChildren values = field.Children();
        if (field.Attribute(Word::Name).empty() ||
            (!values.IsEmpty() && !IsValue(*values.begin(), depth))) {
            return false;
        }
    }
    return true;
}

/// Whether a list is empty or has one item of its kind. More of them would have to be compared.
bool IsList(XmlElement list, int depth) {
    const Word type = WordOf(list.Attribute(Word::Type));
    if (type != Word::String && type != Word::Int && type != Word::Bool &&
        type != Word::Structure) {
        return false;
    }
    XmlElement item;
    for (const XmlElement child : list.Children()) {
        if (item) {
            return false;
        }
        item = child;
    }
    return !item || (item.GetWord() == type && IsValue(item, depth));
}

bool IsValue(XmlElement value, int depth) {
    switch (value.GetWord()) {
        case Word::String:
        case Word::Bool:
            return true;
        case Word::Int:
            return !value.HasContent() || PlainInteger(value.Content());
        case Word::Structure:
            return depth > 0 && IsStructure(value, depth - 1);
        case Word::List:
            return depth > 0 && IsList(value, depth - 1);
        default:
            return false;
    }
}

}  // namespace

bool IsCertainlySoundInput(XmlElement inputSpec) {
    DifferentItems<std::string_view> names;
    DifferentItems<std::string_view> shortNames;
    for (const XmlElement child : inputSpec.Children()) {
        if (child.GetWord() != Word::Parameter) {
            continue;
        }
        const std::string_view shortName = child.Attribute(Word::ShortName);
        if (!IsParameter(child) || !names.Add(child.Attribute(Word::Name)) ||
            (!shortName.empty() && !shortNames.Add(shortName))) {
            return false;
        }
    }
    return true;
}

bool IsCertainlySoundOutput(XmlElement outputSpec) {
    XmlElement shape;
    for (const XmlElement child : outputSpec.Children()) {
        if (shape) {
            return false;
        }
        shape = child;
    }
    constexpr int kUsualDepth = 64;
    return !shape || IsValue(shape, kUsualDepth);
}

}  // namespace Corvel::AutoCli
