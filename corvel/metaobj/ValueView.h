#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

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

/// The fields of one structure by position, in field order. Lives no longer than the structure, and
/// only until a field is added to it or removed from it.
class StructView {
public:
    /// Where to find one field: its name, and the number by which the structure keeps its value.
    struct Entry {
        const std::string* name;
        std::size_t slot;
    };

    explicit StructView(const MetaStruct& structure);
    StructView(StructView&&) = default;
    StructView& operator=(StructView&&) = default;

    std::size_t Count() const { return _count; }
    const std::string& Name(std::size_t i) const { return *_entries[i].name; }
    ValueView Value(std::size_t i) const { return View(Reference(i).get()); }
    const std::shared_ptr<MetaObject>& Reference(std::size_t i) const;
    /// @return the number by which the structure keeps the field; below SlotCount(), and not in
    ///   field order.
    std::size_t Slot(std::size_t i) const { return _entries[i].slot; }
    std::size_t SlotCount() const;
    /// @return the kind Null when there is no such field.
    ValueView Find(std::string_view name) const;

    /// Structures with the same identity keep equal names by equal numbers (slots), so that what has
    /// been found out about a name need not be found out again. An address, of which nothing is
    /// known once a structure with that identity has been changed or is gone.
    const void* LayoutIdentity() const;
    /// @return the number of a name, whether or not this structure has such a field; kNoSlot when
    ///   no structure with this identity has.
    std::size_t SlotOf(std::string_view name) const;
    /// @return the kind Null when there is no such field here, and for kNoSlot.
    ValueView ValueAt(std::size_t slot) const;
    static constexpr std::size_t kNoSlot = static_cast<std::size_t>(-1);

private:
    const MetaStruct* _structure;
    const Entry* _entries;
    std::size_t _count;
    std::vector<Entry> _gathered;  // for a structure without a finished table of entries
};

}  // namespace Corvel::MetaObj
