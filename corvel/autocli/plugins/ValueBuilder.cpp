#include "corvel/autocli/plugins/ValueBuilder.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <optional>
#include <system_error>
#include <utility>

#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/StructFilling.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::AutoCli {

using MetaObj::MetaBool;
using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaString;
using MetaObj::MetaStruct;
using MetaObj::MetaType;
using MetaObj::StructFilling;
using MetaObj::ValueKind;

namespace {

using Value = std::shared_ptr<MetaObject>;

/// name == literal, without a call: there are millions of names.
template <std::size_t size>
bool Is(std::string_view name, const char (&literal)[size]) {
    return name.size() == size - 1 && std::memcmp(name.data(), literal, size - 1) == 0;
}

/// Reads a number as `stream >> number` does in the C locale: leading white space and what follows
/// the digits are passed over; a number out of range is a failure.
bool ReadInteger(std::string_view text, long& number) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return false;
        }
    }
    return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
}

long ToInt(const std::string& content) {
    long number = 0;
    if (!content.empty() && !ReadInteger(content, number)) {
        throw CorvelException("Unable to read an int value from: '" + content + "'");
    }
    return number;
}

bool ToBool(std::string_view content) {
    return !Is(content, "false") && !Is(content, "f") && !Is(content, "0");
}

MetaType ListTypeFromWord(std::string_view word) {
    static constexpr std::array<std::pair<std::string_view, MetaType>, 5> kWords{{
        {"string", MetaType::String},
        {"int", MetaType::Int},
        {"bool", MetaType::Bool},
        {"structure", MetaType::Struct},
        {"list", MetaType::List},
    }};
    for (const auto& [known, type] : kWords) {
        if (word == known) {
            return type;
        }
    }
    throw CorvelException(
        "Invalid list type attribute.  Must be one of [string, int, bool, structure, list]");
}

Value MakeValue(long value) {
    return MetaInt::New(value);
}

Value MakeValue(bool value) {
    return MetaBool::New(value);
}

Value MakeValue(std::string_view value) {
    return MetaString::New(std::string(value));
}

Value MakeValue(Value&& value) {
    return std::move(value);
}

MetaStruct* AsStructure(MetaObject* value) {
    return MetaObj::View(value).kind == ValueKind::Struct ? static_cast<MetaStruct*>(value)
                                                          : nullptr;
}

const MetaList* AsList(MetaObject* value) {
    return MetaObj::View(value).list;
}

void Set(StructFilling& structure, std::string_view name, long value) {
    structure.SetInt(name, value);
}

void Set(StructFilling& structure, std::string_view name, bool value) {
    structure.SetBool(name, value);
}

void Set(StructFilling& structure, std::string_view name, std::string_view value) {
    structure.SetText(name, value);
}

void Set(StructFilling& structure, std::string_view name, Value&& value) {
    structure.SetValue(name, std::move(value));
}

}  // namespace

struct ValueBuilder::Container {
    /// Where the reading of a structure stands.
    enum class Place { BetweenFields, BeforeValue, BehindValue };

    bool IsList() const { return !structure.has_value(); }

    std::optional<StructFilling> structure = {};
    std::shared_ptr<MetaList> list = {};  // of structures: empty before the first item
    MetaObject* sibling = nullptr;  // what stood at the same place in an earlier sibling, or null
    Place place = Place::BetweenFields;
    std::string fieldName = {};
};

ValueBuilder::ValueBuilder() = default;

ValueBuilder::~ValueBuilder() = default;

void ValueBuilder::StartElement(std::string_view name, const XmlAttributes& attributes) {
    if (_ignoredDepth > 0 || _scalar != Scalar::None) {
        ++_ignoredDepth;
    } else if (_containers.empty() || _containers.back().IsList()) {
        StartValue(name, attributes);
    } else {
        StartInStructure(_containers.back(), name, attributes);
    }
}

void ValueBuilder::StartInStructure(Container& structure,
                                    std::string_view name,
                                    const XmlAttributes& attributes) {
    using Place = Container::Place;
    if (structure.place == Place::BeforeValue) {
        structure.place = Place::BehindValue;
        StartValue(name, attributes);
    } else if (structure.place == Place::BetweenFields && Is(name, "field")) {
        structure.place = Place::BeforeValue;
        structure.fieldName = attributes.Find("name");
        if (structure.fieldName.empty()) {
            throw CorvelException(
                "Invalid <field> tag found.  <field> requires a 'name' attribute.");
        }
    } else {
        ++_ignoredDepth;
    }
}

void ValueBuilder::StartValue(std::string_view name, const XmlAttributes& attributes) {
    if (Is(name, "string")) {
        StartScalar(Scalar::String);
    } else if (Is(name, "int")) {
        StartScalar(Scalar::Int);
    } else if (Is(name, "bool")) {
        StartScalar(Scalar::Bool);
    } else if (Is(name, "structure")) {
        StartStructure(attributes);
    } else if (Is(name, "list")) {
        StartList(attributes);
    } else {
        throw CorvelException("Unable to make a MetaObject from a node with tag '" +
                              std::string(name) + "'");
    }
}

void ValueBuilder::StartScalar(Scalar scalar) {
    _scalar = scalar;
    _content.clear();
}

void ValueBuilder::StartStructure(const XmlAttributes& attributes) {
    const Value sibling = FindSibling();
    MetaStruct* like = AsStructure(sibling.get());
    StructFilling filling(attributes.Find("typeName"), like);
    _containers.push_back({.structure = std::move(filling), .sibling = like});
}

void ValueBuilder::StartList(const XmlAttributes& attributes) {
    const MetaType type = ListTypeFromWord(attributes.Find("type"));
    const Value sibling = FindSibling();
    // A list of structures is made with its first item.
    auto list = type == MetaType::Struct ? nullptr : MetaList::New(type);
    _containers.push_back({.list = std::move(list), .sibling = sibling.get()});
}

void ValueBuilder::Text(std::string_view text) {
    if (_scalar != Scalar::None) {
        _content += text;
    }
}

void ValueBuilder::EndElement() {
    using Place = Container::Place;
    if (_ignoredDepth > 0) {
        --_ignoredDepth;
    } else if (_scalar != Scalar::None) {
        EndScalar();
    } else if (_containers.back().place != Place::BetweenFields) {
        _containers.back().place = Place::BetweenFields;
    } else {
        EndContainer();
    }
}

void ValueBuilder::EndScalar() {
    switch (std::exchange(_scalar, Scalar::None)) {
        case Scalar::Int:
            return Deliver(ToInt(_content));
        case Scalar::Bool:
            return Deliver(ToBool(_content));
        default:
            return Deliver(std::string_view(_content));
    }
}

void ValueBuilder::EndContainer() {
    Container ended = std::move(_containers.back());
    _containers.pop_back();
    if (!ended.IsList()) {
        return Deliver(Value(ended.structure->GetStructure()));
    }
    Deliver(Value(ended.list == nullptr ? MetaList::New(MetaType::Struct, nullptr)
                                        : std::move(ended.list)));
}

/// Puts a value that is complete where it belongs.
template <typename Anything>
void ValueBuilder::Deliver(Anything&& value) {
    if (_containers.empty()) {
        _value = MakeValue(std::forward<Anything>(value));
        return;
    }
    Container& container = _containers.back();
    if (!container.IsList()) {
        Set(*container.structure, container.fieldName, std::forward<Anything>(value));
        return;
    }
    Value item = MakeValue(std::forward<Anything>(value));
    if (container.list == nullptr) {
        // An item that is no structure counts as none here; the list then refuses it.
        container.list = MetaList::New(MetaType::Struct, item);
    }
    container.list->Add(std::move(item));
}

/// @return the value that stood at the place of the one to come in an earlier sibling of what holds
///         it: it is likely to have the same fields. Empty when there is none.
Value ValueBuilder::FindSibling() const {
    if (_containers.empty()) {
        return nullptr;
    }
    const Container& container = _containers.back();
    if (!container.IsList()) {
        MetaStruct* structure = AsStructure(container.sibling);
        return structure == nullptr ? nullptr : structure->GetField(container.fieldName);
    }
    const MetaList* list =
        container.list == nullptr ? AsList(container.sibling) : container.list.get();
    return list == nullptr ? nullptr : list->GetListStructure();
}

}  // namespace Corvel::AutoCli
