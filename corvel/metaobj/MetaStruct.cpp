#include "corvel/metaobj/MetaStruct.h"

#include <algorithm>
#include <utility>

#include "corvel/metaobj/MetaStructLayout.h"
#include "corvel/metaobj/NullText.h"
#include "corvel/metaobj/ReleaseScope.h"
#include "corvel/metaobj/StructureComparison.h"
#include "corvel/metaobj/ValueText.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::MetaObj {

namespace {

// Made on first use, because other libraries may ask before our initialisers have run.
const std::string& DocEmpty() {
    static const std::string sEmpty;
    return sEmpty;
}

const std::string& DocMissing() {
    static const std::string sMissing = "Documentation missing";
    return sMissing;
}

}  // namespace

const std::string& MetaStruct::_docEmpty = DocEmpty();
const std::string& MetaStruct::_docMissingStaticString = DocMissing();

MetaStruct::Field::Field(std::shared_ptr<MetaObject> fieldValue, std::string fieldDocumentation)
    : value(std::move(fieldValue)), documentation(std::move(fieldDocumentation)) {}

MetaStruct::Field::Field(std::shared_ptr<MetaObject> fieldValue, const char* fieldDocumentation)
    : Field(std::move(fieldValue), std::string(TextOrEmpty(fieldDocumentation))) {}

std::shared_ptr<MetaStruct> MetaStruct::New(const char* typeName) {
    return New(std::string(TextOrEmpty(typeName)));
}

std::shared_ptr<MetaStruct> MetaStruct::New(const std::string& typeName) {
    return New(std::string(typeName));
}

std::shared_ptr<MetaStruct> MetaStruct::New(std::string&& typeName) {
    return std::make_shared<MetaStruct>(FactoryFlag{}, std::move(typeName));
}

std::shared_ptr<MetaStruct> MetaStruct::New(const std::shared_ptr<MetaStruct>& definition) {
    return definition == nullptr ? New(std::string())
                                 : std::make_shared<MetaStruct>(FactoryFlag{}, definition);
}

MetaStruct::MetaStruct(FactoryFlag flag, std::string&& typeName)
    : MetaObject(flag, MetaType::Struct) {
    if (!IsValidStructName(typeName)) {
        throw CorvelException("Invalid name specified for MetaStruct: " + typeName);
    }
    _layout = std::make_shared<Layout>();
    _typeName = std::make_shared<const std::string>(std::move(typeName));
}

MetaStruct::MetaStruct(FactoryFlag flag, const std::shared_ptr<MetaStruct>& definition)
    : MetaObject(flag, MetaType::Struct),
      _definition(definition),
      _typeName(definition->_typeName) {
    definition->LockStructure();
    definition->FinishLayout();
    _layout = definition->_layout;
    _values.resize(_layout->slots.size());
}

MetaStruct::~MetaStruct() {
    ReleaseScope scope;
    scope.Release(_values);
    scope.Release(std::move(_definition));
}

const std::string& MetaStruct::GetTypeName() const {
    return *_typeName;
}

bool MetaStruct::HasStructureDefinition() const {
    return _definition != nullptr;
}

std::shared_ptr<MetaStruct> MetaStruct::GetStructureDefinition() const {
    return _definition;
}

bool MetaStruct::MatchesStructureDefinition() const {
    return _definition == nullptr || IsSameStructure(_definition, nullptr);
}

void MetaStruct::LockStructure() {
    _locked = true;
    if (_definition == nullptr) {
        FinishLayout();
    }
}

// The layout of a definition holds exactly its fields, so that all it makes can share the layout.
void MetaStruct::FinishLayout() {
    if (_fieldCount != _layout->slots.size()) {
        DropAbsentNames();
    }
    if (_layout->entries.size() != _fieldCount) {
        _layout->entries.reserve(_fieldCount);
        for (const auto& [name, slot] : _layout->slots) {
            _layout->entries.push_back({&name, slot});
        }
    }
}

// Moves the fields to a layout of their own, without the names of removed fields.
void MetaStruct::DropAbsentNames() {
    auto layout = std::make_shared<Layout>();
    std::vector<std::shared_ptr<MetaObject>> values;
    std::vector<std::string> documentation;
    values.reserve(_fieldCount);
    for (const auto& [name, slot] : _layout->slots) {
        if (_values[slot] == nullptr) {
            continue;
        }
        layout->slots.emplace_hint(layout->slots.end(), name, values.size());
        values.push_back(_values[slot]);
        if (!_documentation.empty()) {
            documentation.push_back(DocumentationAt(slot));
        }
    }
    _layout = std::move(layout);
    _values = std::move(values);
    _documentation = std::move(documentation);
}

bool MetaStruct::HasField(const char* name) const {
    return HasField(std::string(TextOrEmpty(name)));
}

bool MetaStruct::HasField(const std::string& name) const {
    return FindSlot(name).has_value();
}

std::shared_ptr<MetaObject> MetaStruct::GetField(const char* name) const {
    return GetField(std::string(TextOrEmpty(name)));
}

std::shared_ptr<MetaObject> MetaStruct::GetField(const std::string& name) const {
    const std::optional<std::size_t> slot = FindSlot(name);
    return slot ? _values[*slot] : nullptr;
}

MetaType MetaStruct::GetFieldType(const char* name) const {
    return GetFieldType(std::string(TextOrEmpty(name)));
}

MetaType MetaStruct::GetFieldType(const std::string& name) const {
    const std::optional<std::size_t> slot = FindSlot(name);
    if (!slot) {
        throw 1;  // Deliberate: whoever catches CorvelException does not catch this.
    }
    return _values[*slot]->GetType();
}

const std::string& MetaStruct::GetFieldDocumentation(const char* name) const {
    return GetFieldDocumentation(std::string(TextOrEmpty(name)));
}

const std::string& MetaStruct::GetFieldDocumentation(const std::string& name) const {
    const std::optional<std::size_t> slot = FindSlot(name);
    if (!slot) {
        throw CorvelException("Field " + name + " is not present in the structure " + *_typeName);
    }
    const std::string& documentation = DocumentationAt(*slot);
    return documentation.empty() ? DocMissing() : documentation;
}

std::list<std::string> MetaStruct::GetFieldNames() const {
    const StructView fields(*this);
    std::list<std::string> names;
    for (std::size_t i = 0; i < fields.Count(); ++i) {
        names.push_back(fields.Name(i));
    }
    return names;
}

void MetaStruct::RemoveField(const char* name) {
    RemoveField(std::string(TextOrEmpty(name)));
}

// The name stays in the layout, which other structures may share.
void MetaStruct::RemoveField(const std::string& name) {
    if (_locked) {
        throw CorvelException("Structure is locked, unable to remove fields");
    }
    const std::optional<std::size_t> slot = FindSlot(name);
    if (!slot) {
        return;
    }
    if (*slot < _documentation.size()) {
        _documentation[*slot].clear();
    }
    --_fieldCount;
    _values[*slot].reset();
}

void MetaStruct::SetField(const std::string& name,
                          std::shared_ptr<MetaObject> value,
                          const std::string& documentation) {
    if (value == nullptr) {
        throw CorvelException("Invalid NULL value was assigned to the field " + name +
                              " in the structure " + *_typeName);
    }
    if (!IsValidFieldName(name)) {
        throw CorvelException("Unable to set new field " + name + " on structure " + *_typeName +
                              ", because the field name contains invalid character. Can only be "
                              "alphanumeric characters and '_'");
    }
    // A copy, and made first: the text may be that of another field, which SlotFor may move.
    Field field(std::move(value), documentation);
    Store(SlotFor(name), std::move(field));
}

// Where the field is, or may now be put.
std::size_t MetaStruct::SlotFor(const std::string& name) {
    const auto found = _layout->slots.find(name);
    const bool isInLayout = found != _layout->slots.end();
    if (_locked) {
        if (!isInLayout || _values[found->second] == nullptr) {
            throw CorvelException("Unable to set new field " + name +
                                  " on structure. Structure has been locked");
        }
        return found->second;
    }
    if (isInLayout) {
        return found->second;
    }
    // An unlocked structure has the layout of its definition.
    if (_definition != nullptr) {
        throw CorvelException("Unable to set new field " + name +
                              " on structure.  The field does not match the Structure definition "
                              "for this MetaStruct.");
    }
    return AddSlot(name);
}

// Only a structure without definition gets here, and it shares its layout with no other: sharing
// begins when it becomes a definition, which locks it.
std::size_t MetaStruct::AddSlot(const std::string& name) {
    constexpr std::size_t kAbsentNamesKept = 16;
    if (_layout->slots.size() > 2 * _fieldCount + kAbsentNamesKept) {
        DropAbsentNames();
    }
    const std::size_t slot = _layout->slots.size();
    _values.resize(slot + 1);
    _layout->slots.emplace(name, slot);
    return slot;
}

void MetaStruct::Store(std::size_t slot, Field&& field) {
    if (slot < _documentation.size() || !field.documentation.empty()) {
        _documentation.resize(std::max(_documentation.size(), slot + 1));
        _documentation[slot] = std::move(field.documentation);
    }
    if (_values[slot] == nullptr) {
        ++_fieldCount;
    }
    _values[slot] = std::move(field.value);
}

std::optional<std::size_t> MetaStruct::FindSlot(std::string_view name) const {
    const auto found = _layout->slots.find(name);
    if (found == _layout->slots.end() || _values[found->second] == nullptr) {
        return std::nullopt;
    }
    return found->second;
}

const std::string& MetaStruct::DocumentationAt(std::size_t slot) const {
    return slot < _documentation.size() ? _documentation[slot] : DocEmpty();
}

std::string MetaStruct::ToString() const {
    std::string text;
    AppendText(text, *this);
    return text;
}

bool MetaStruct::IsSameStructure(const std::shared_ptr<MetaObject>& other,
                                 std::list<std::string>* errors) const {
    return StructureComparison(errors).Compare(*this, other.get());
}

}  // namespace Corvel::MetaObj
