#include "corvel/metaobj/StructFilling.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "corvel/metaobj/FieldLayout.h"
#include "corvel/metaobj/FieldSlot.h"

namespace Corvel::MetaObj {

namespace {

/// Most structures are not larger, and get their room in one go.
constexpr std::size_t kFirstRoom = 16;

}  // namespace

StructFilling::StructFilling(std::string_view typeName, MetaStruct* like) {
    if (like == nullptr || like->GetTypeName() != typeName) {
        _structure = MetaStruct::New(std::string(typeName));
        return;
    }
    if (!like->_layout->IsFinished()) {
        like->FinishLayout();
    }
    _structure = std::make_shared<MetaStruct>(MetaObject::FactoryFlag{}, like->_layout);
}

void StructFilling::SetInt(std::string_view name, long value) {
    Set(name, FieldSlot::OfInt(value));
}

void StructFilling::SetBool(std::string_view name, bool value) {
    Set(name, FieldSlot::OfBool(value));
}

void StructFilling::SetText(std::string_view name, std::string_view value) {
    Set(name, FieldSlot::OfText(value));
}

void StructFilling::SetValue(std::string_view name, std::shared_ptr<MetaObject> value) {
    Set(name, FieldSlot::OfReference(std::move(value)));
}

void StructFilling::Set(std::string_view name, FieldSlot&& value) {
    if (IsNext(name) && !value.IsAbsent()) {
        Append(std::move(value));
    } else {
        _next = _structure->Set(name, std::move(value), {}, _next) + 1;
    }
}

// Whether the field is the one that comes next in a structure like an earlier one: then nothing is
// to be looked for or to be checked, and its slot is the first that there is not yet.
bool StructFilling::IsNext(std::string_view name) const {
    const FieldLayout& layout = *_structure->_layout;
    return _structure->_slots.size() == _next && _next < layout.Size() && layout.IsFinished() &&
           layout.Name(_next) == name && !_structure->_locked;
}

void StructFilling::Append(FieldSlot&& value) {
    std::vector<FieldSlot>& slots = _structure->_slots;
    if (slots.size() == slots.capacity()) {
        slots.reserve(
            std::min(_structure->_layout->Size(), std::max(kFirstRoom, 2 * slots.size())));
    }
    slots.push_back(std::move(value));
    ++_structure->_fieldCount;
    ++_next;
}

}  // namespace Corvel::MetaObj
