#include "corvel/metaobj/MetaStruct.h"

#include <algorithm>
#include <utility>

#include "corvel/metaobj/FieldExtras.h"
#include "corvel/metaobj/FieldLayout.h"
#include "corvel/metaobj/FieldSlot.h"
#include "corvel/metaobj/MissingDocumentation.h"
#include "corvel/metaobj/NullText.h"
#include "corvel/metaobj/ReleaseScope.h"
#include "corvel/metaobj/StructureComparison.h"
#include "corvel/metaobj/ValueText.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::MetaObj {

namespace {

constexpr std::size_t kNoSlot = FieldLayout::kNoSlot;

// How many slots of absent fields a structure puts up with, beside two for each field that it has.
constexpr std::size_t kAbsentFieldsKept = 16;

// Made on first use, because other libraries may ask before our initialisers have run.
const std::string& DocEmpty() {
    static const std::string sEmpty;
    return sEmpty;
}

}  // namespace

const std::string& MetaStruct::_docEmpty = DocEmpty();
const std::string& MetaStruct::_docMissingStaticString = MissingDocumentationAtLoad();

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
    _layout =
        std::make_shared<FieldLayout>(std::make_shared<const std::string>(std::move(typeName)));
}

MetaStruct::MetaStruct(FactoryFlag flag, const std::shared_ptr<MetaStruct>& definition)
    : MetaObject(flag, MetaType::Struct), _definition(definition) {
    definition->LockStructure();
    definition->FinishLayout();
    _layout = definition->_layout;
}

MetaStruct::MetaStruct(FactoryFlag flag, std::shared_ptr<FieldLayout> layout)
    : MetaObject(flag, MetaType::Struct), _layout(std::move(layout)) {}

MetaStruct::~MetaStruct() {
    const std::unique_ptr<FieldExtras> extras(_extras.load(std::memory_order_relaxed));
    ReleaseScope scope;
    for (FieldSlot& slot : _slots) {
        if (slot.IsReference()) {
            scope.Release(slot.TakeReference());
        }
    }
    scope.Release(std::move(_definition));
}

const std::string& MetaStruct::GetTypeName() const {
    return *_layout->TypeName();
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
    if (_fieldCount != _layout->Size()) {
        TakeOwnLayout();
    }
    _layout->Finish();
}

// Moves the fields to a layout of their own, in which none is absent. They keep their order there.
void MetaStruct::TakeOwnLayout() {
    auto layout = std::make_shared<FieldLayout>(_layout->TypeName());
    for (std::size_t slot = 0; slot < _slots.size(); ++slot) {
        if (HasValue(slot)) {
            layout->Add(_layout->Name(slot));
        }
    }
    // Nothing fails from here on.
    FieldExtras* const extras = _extras.load(std::memory_order_relaxed);
    std::size_t to = 0;
    for (std::size_t from = 0; from < _slots.size(); ++from) {
        if (!HasValue(from)) {
            continue;
        }
        if (to != from) {
            _slots[to] = std::move(_slots[from]);
            if (extras != nullptr) {
                extras->Move(from, to);
            }
        }
        ++to;
    }
    _slots.resize(to);
    _layout = std::move(layout);
}

bool MetaStruct::HasValue(std::size_t slot) const {
    return slot < _slots.size() && !_slots[slot].IsAbsent();
}

std::size_t MetaStruct::FindSlot(std::string_view name) const {
    const std::size_t slot = _layout->Find(name);
    return HasValue(slot) ? slot : kNoSlot;
}

const FieldSlot* MetaStruct::FindField(std::string_view name) const {
    const std::size_t slot = FindSlot(name);
    return slot == kNoSlot ? nullptr : &_slots[slot];
}

bool MetaStruct::HasField(const char* name) const {
    return FindField(TextOrEmpty(name)) != nullptr;
}

bool MetaStruct::HasField(const std::string& name) const {
    return FindField(name) != nullptr;
}

std::shared_ptr<MetaObject> MetaStruct::GetField(const char* name) const {
    return GetField(std::string(TextOrEmpty(name)));
}

std::shared_ptr<MetaObject> MetaStruct::GetField(const std::string& name) const {
    const std::size_t slot = FindSlot(name);
    return slot == kNoSlot ? nullptr : ReferenceAt(slot);
}

// A value that is made here is kept, so that whoever asks again gets the same. The slot itself stays
// as it is, because other threads may be reading it.
std::shared_ptr<MetaObject> MetaStruct::ReferenceAt(std::size_t slot) const {
    const FieldSlot& field = _slots[slot];
    if (field.IsReference()) {
        return field.Reference();
    }
    if (const FieldExtras* extras = _extras.load(std::memory_order_acquire)) {
        if (std::shared_ptr<MetaObject> kept = extras->Kept(slot)) {
            return kept;
        }
    }
    std::shared_ptr<MetaObject> made = field.MakeReference();
    if (made.use_count() > 1) {
        return made;  // one of those that everybody shares: it will be the same next time
    }
    return Extras().Keep(slot, std::move(made));
}

// Makes them on first use. Several threads may be the first.
FieldExtras& MetaStruct::Extras() const {
    FieldExtras* extras = _extras.load(std::memory_order_acquire);
    if (extras == nullptr) {
        auto made = std::make_unique<FieldExtras>();
        if (_extras.compare_exchange_strong(extras, made.get(), std::memory_order_acq_rel)) {
            extras = made.release();
        }
    }
    return *extras;
}

MetaType MetaStruct::GetFieldType(const char* name) const {
    return GetFieldType(std::string(TextOrEmpty(name)));
}

MetaType MetaStruct::GetFieldType(const std::string& name) const {
    const FieldSlot* const field = FindField(name);
    if (field == nullptr) {
        throw 1;  // Deliberate: whoever catches CorvelException does not catch this.
    }
    return field->Type();
}

const std::string& MetaStruct::GetFieldDocumentation(const char* name) const {
    return GetFieldDocumentation(std::string(TextOrEmpty(name)));
}

const std::string& MetaStruct::GetFieldDocumentation(const std::string& name) const {
    const std::size_t slot = FindSlot(name);
    if (slot == kNoSlot) {
        throw CorvelException("Field " + name + " is not present in the structure " +
                              GetTypeName());
    }
    const FieldExtras* const extras = _extras.load(std::memory_order_acquire);
    const std::string& documentation = extras == nullptr ? DocEmpty() : extras->Documentation(slot);
    return documentation.empty() ? MissingDocumentation() : documentation;
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
    const std::size_t slot = FindSlot(name);
    if (slot == kNoSlot) {
        return;
    }
    if (FieldExtras* const extras = _extras.load(std::memory_order_relaxed)) {
        extras->Clear(slot);
    }
    --_fieldCount;
    _slots[slot] = FieldSlot();
}

void MetaStruct::Set(std::string_view name, FieldSlot&& value) {
    // Whoever sets the fields in the order of the layout is going to set the first absent one.
    Set(name, std::move(value), {}, _fieldCount);
}

// What all setters end in. @return the slot of the field.
std::size_t MetaStruct::Set(std::string_view name,
                            FieldSlot&& value,
                            std::string_view documentation,
                            std::size_t likelySlot) {
    if (value.IsAbsent()) {
        throw CorvelException("Invalid NULL value was assigned to the field " + std::string(name) +
                              " in the structure " + GetTypeName());
    }
    // A copy, and made first: the text may be that of another field, which SlotFor may move.
    std::string ownDocumentation(documentation);
    const std::size_t slot = SlotFor(name, likelySlot);
    MakeRoom(slot);
    FieldExtras* extras = _extras.load(std::memory_order_relaxed);
    if (!ownDocumentation.empty()) {
        extras = &Extras();
        extras->ReserveDocumentation(slot);
    }
    // Nothing fails from here on.
    if (extras != nullptr) {
        extras->SetDocumentation(slot, std::move(ownDocumentation));
        extras->DropReference(slot);
    }
    if (_slots[slot].IsAbsent()) {
        ++_fieldCount;
    }
    _slots[slot] = std::move(value);
    return slot;
}

// Where the field is, or may now be put.
std::size_t MetaStruct::SlotFor(std::string_view name, std::size_t likelySlot) {
    const std::size_t slot = _layout->Find(name, likelySlot);
    if (slot == kNoSlot && !IsValidFieldName(std::string(name))) {
        throw CorvelException("Unable to set new field " + std::string(name) + " on structure " +
                              GetTypeName() +
                              ", because the field name contains invalid character. Can only be "
                              "alphanumeric characters and '_'");
    }
    if (_locked) {
        if (!HasValue(slot)) {
            throw CorvelException("Unable to set new field " + std::string(name) +
                                  " on structure. Structure has been locked");
        }
        return slot;
    }
    // An unlocked structure has the layout of its definition.
    if (_definition != nullptr) {
        if (slot == kNoSlot) {
            throw CorvelException("Unable to set new field " + std::string(name) +
                                  " on structure.  The field does not match the Structure "
                                  "definition for this MetaStruct.");
        }
        return slot;
    }
    // Room up to a far slot is not worth while for a structure that only begins like another.
    const bool isFar = slot >= _slots.size() && slot > 2 * _fieldCount + kAbsentFieldsKept;
    return slot == kNoSlot || isFar ? AddSlot(name) : slot;
}

// Only a structure without definition gets here.
std::size_t MetaStruct::AddSlot(std::string_view name) {
    if (_layout->IsFinished() || _layout->Size() > 2 * _fieldCount + kAbsentFieldsKept) {
        TakeOwnLayout();
    }
    return _layout->Add(name);
}

// A structure that shares its layout is going to have most of the fields, so a small one gets its
// room at once, and no structure more than the layout asks for.
void MetaStruct::MakeRoom(std::size_t slot) {
    if (slot < _slots.size()) {
        return;
    }
    std::size_t size = slot + 1;
    if (_layout->IsFinished()) {
        size = std::min(_layout->Size(), std::max({size, 2 * _slots.size(), kAbsentFieldsKept}));
        _slots.reserve(size);
    }
    _slots.resize(size);
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
