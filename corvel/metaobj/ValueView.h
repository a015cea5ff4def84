#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "corvel/metaobj/FieldLayout.h"
#include "corvel/metaobj/FieldSlot.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::MetaObj {

class MetaList;

/// What one looks at in a ValueView. Mismatch: the value is not of the class that its MetaType
/// stands for, so nothing can be said about it but what it claims to be.
enum class ValueKind : std::uint32_t { Null, Bool, Int, String, Struct, List, Mismatch };

/// One value, taken apart without counting references: how the library itself walks values.
/// Only the member that belongs to the kind says something. Lives no longer than the value.
struct ValueView {
    ValueKind kind = ValueKind::Null;
    MetaType type = MetaType::Int;
    bool boolean = false;
    long integer = 0;
    std::string_view text;
    const MetaStruct* structure = nullptr;
    const MetaList* list = nullptr;
    const MetaObject* object = nullptr;  // of a Mismatch
};

/// @param value  null gives the kind Null.
ValueView View(const MetaObject* value);

/// The same for what a structure keeps for a field.
inline ValueView View(const FieldSlot& slot) {
    ValueView view;
    switch (slot.GetKind()) {
        case FieldSlot::Kind::Absent:
            return View(nullptr);
        case FieldSlot::Kind::Int:
            view.kind = ValueKind::Int;
            view.type = MetaType::Int;
            view.integer = slot.Int();
            break;
        case FieldSlot::Kind::Bool:
            view.kind = ValueKind::Bool;
            view.type = MetaType::Bool;
            view.boolean = slot.Bool();
            break;
        case FieldSlot::Kind::ShortText:
        case FieldSlot::Kind::LongText:
            view.kind = ValueKind::String;
            view.type = MetaType::String;
            view.text = slot.Text();
            break;
        case FieldSlot::Kind::Reference:
            return View(slot.Reference().get());
    }
    return view;
}

/// The fields of one structure by position, in field order. Lives no longer than the structure, and
/// only until a field is set in it or removed from it.
class StructView {
public:
    static constexpr std::size_t kNoSlot = FieldLayout::kNoSlot;

    explicit StructView(const MetaStruct& structure)
        : _structure(&structure),
          _layout(structure._layout.get()),
          _slots(structure._slots.data()),
          _slotCount(structure._slots.size()),
          _count(structure._fieldCount),
          _entries(_layout->Entries().data()) {
        if (!_layout->IsFinished() || _layout->Size() != _count) {
            Gather();
        }
    }
    StructView(StructView&&) = default;
    StructView& operator=(StructView&&) = default;

    std::size_t Count() const { return _count; }
    const std::string& Name(std::size_t i) const { return *_entries[i].name; }
    ValueView Value(std::size_t i) const { return View(_slots[Slot(i)]); }
    /// @return the kind Null when there is no such field.
    ValueView Find(std::string_view name) const { return ValueAt(SlotOf(name)); }

    /// Structures with the same identity keep equal names by equal numbers (slots), so that what has
    /// been found out about a name need not be found out again. An address, of which nothing is
    /// known once a structure with that identity has been changed or is gone.
    const void* LayoutIdentity() const { return _layout; }
    /// How many slots there are for names, also of fields that this structure does not have.
    std::size_t SlotCount() const { return _layout->Size(); }
    /// @return the slot of a field; the order of slots is not that of fields.
    std::size_t Slot(std::size_t i) const { return _entries[i].slot; }
    /// @return the slot of a name, whether or not this structure has such a field; kNoSlot when no
    ///   structure with this identity has.
    std::size_t SlotOf(std::string_view name) const { return _layout->Find(name); }
    /// @return the kind Null when there is no such field here, and for kNoSlot.
    ValueView ValueAt(std::size_t slot) const {
        return slot < _slotCount ? View(_slots[slot]) : ValueView();
    }

private:
    using Entry = FieldLayout::Entry;

    void Gather();

    const MetaStruct* _structure;
    const FieldLayout* _layout;
    const FieldSlot* _slots;
    std::size_t _slotCount;
    std::size_t _count;
    const Entry* _entries;
    std::vector<Entry> _gathered;  // for a structure that has not all fields of a finished layout
};

}  // namespace Corvel::MetaObj
