#include "fuzz/support/ValueDump.h"

#include <array>
#include <cstddef>

namespace Corvel::Fuzz {

using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

namespace {

std::string DumpStructure(const MetaStruct& structure, TypeNames typeNames) {
    std::string dump = typeNames == TypeNames::Shown ? ToHex(structure.GetTypeName()) : "";
    std::string_view separator = "{";
    for (const std::string& name : structure.GetFieldNames()) {
        dump.append(separator).append(ToHex(name)).append(":");
        dump += DumpValue(structure.GetField(name), typeNames);
        separator = ",";
    }
    return dump + (separator == "{" ? "{}" : "}");
}

std::string DumpList(const MetaList& list, TypeNames typeNames) {
    std::string dump(typeNames == TypeNames::Shown ? ListWord(list.GetListType()) : "");
    std::string_view separator = "[";
    for (const std::shared_ptr<MetaObject>& item : list.GetObjects()) {
        dump.append(separator).append(DumpValue(item, typeNames));
        separator = ",";
    }
    return dump + (separator == "[" ? "[]" : "]");
}

}  // namespace

std::string DumpValue(const std::shared_ptr<MetaObject>& value, TypeNames typeNames) {
    if (value == nullptr) {
        return "n";
    }
    switch (value->GetType()) {
        case MetaType::Int:
            return "i" + value->ToString();
        case MetaType::Bool:
            return value->ToString() == "true" ? "b1" : "b0";
        case MetaType::String:
            return "s" + ToHex(value->ToString());
        case MetaType::Struct:
            return DumpStructure(dynamic_cast<const MetaStruct&>(*value), typeNames);
        case MetaType::List:
            return DumpList(dynamic_cast<const MetaList&>(*value), typeNames);
    }
    return "?";
}

std::string ToHex(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string hex;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        hex += kDigits[byte >> 4U];
        hex += kDigits[byte & 15U];
    }
    return hex;
}

std::string_view ListWord(MetaType type) {
    static constexpr std::array<std::string_view, 5> kWords = {
        "integer", "boolean", "string", "structure", "list"};
    return kWords.at(static_cast<std::size_t>(type));
}

}  // namespace Corvel::Fuzz
