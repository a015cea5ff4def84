#include "corvel/metaobj/ValueView.h"

#include <typeinfo>

#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStructLayout.h"

namespace Corvel::MetaObj {

namespace {

// The value classes are final, so comparing the class is all that a dynamic cast would do.
template <typename T>
const T* As(const MetaObject& value) {
    return typeid(value) == typeid(T) ? static_cast<const T*>(&value) : nullptr;
}

}  // namespace

ValueView View(const MetaObject* value) {
    ValueView view;
    if (value == nullptr) {
        return view;
    }
    view.kind = ValueKind::Mismatch;
    view.type = value->GetType();
    switch (view.type) {
        case MetaType::Int:
            if (const auto* integer = As<MetaInt>(*value)) {
                view.kind = ValueKind::Int;
                view.integer = integer->GetValue();
            }
            break;
        case MetaType::Bool:
            if (const auto* boolean = As<MetaBool>(*value)) {
                view.kind = ValueKind::Bool;
                view.boolean = boolean->GetValue();
            }
            break;
        case MetaType::String:
            if (const auto* text = As<MetaString>(*value)) {
                view.kind = ValueKind::String;
                view.text = text->GetValue();
            }
            break;
        case MetaType::Struct:
            view.structure = As<MetaStruct>(*value);
            if (view.structure != nullptr) {
                view.kind = ValueKind::Struct;
            }
            break;
        case MetaType::List:
            view.list = As<MetaList>(*value);
            if (view.list != nullptr) {
                view.kind = ValueKind::List;
            }
            break;
    }
    if (view.kind == ValueKind::Mismatch) {
        view.object = value;
    }
    return view;
}

StructView::StructView(const MetaStruct& structure)
    : _structure(&structure), _count(structure._fieldCount) {
    const MetaStruct::Layout& layout = *structure._layout;
    if (layout.entries.size() == _count) {
        _entries = layout.entries.data();
        return;
    }
    _gathered.reserve(_count);
    for (const auto& [name, slot] : layout.slots) {
        if (structure._values[slot] != nullptr) {
            _gathered.push_back({&name, slot});
        }
    }
    _entries = _gathered.data();
}

const std::shared_ptr<MetaObject>& StructView::Reference(std::size_t i) const {
    return _structure->_values[_entries[i].slot];
}

ValueView StructView::Find(std::string_view name) const {
    const std::optional<std::size_t> slot = _structure->FindSlot(name);
    return View(slot ? _structure->_values[*slot].get() : nullptr);
}

std::size_t StructView::SlotCount() const {
    return _structure->_layout->slots.size();
}

const void* StructView::LayoutIdentity() const {
    return _structure->_layout.get();
}

std::size_t StructView::SlotOf(std::string_view name) const {
    const auto found = _structure->_layout->slots.find(name);
    return found == _structure->_layout->slots.end() ? kNoSlot : found->second;
}

ValueView StructView::ValueAt(std::size_t slot) const {
    return View(slot < _structure->_values.size() ? _structure->_values[slot].get() : nullptr);
}

}  // namespace Corvel::MetaObj
