#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Corvel::MetaObj {

/// The type name and the field names of structures. A name stands for the number of a slot, by which
/// each structure keeps its value. One layout serves a definition and all that is made from it, and
/// structures that a reader found to be alike; it is finished before it is shared, and from then on
/// never changes.
class FieldLayout {
public:
    static constexpr std::size_t kNoSlot = static_cast<std::size_t>(-1);

    /// A name and its slot. The name lives as long as the layout.
    struct Entry {
        const std::string* name;
        std::size_t slot;
    };

    /// The type name is shared, because it outlives a layout that a structure gives up.
    explicit FieldLayout(std::shared_ptr<const std::string> typeName);

    const std::shared_ptr<const std::string>& TypeName() const { return _typeName; }

    /// How many names there are; slots are numbered from 0 in the order of adding.
    std::size_t Size() const { return _names.size(); }
    const std::string& Name(std::size_t slot) const { return *_names[slot]; }
    /// @return kNoSlot when there is no such name.
    std::size_t Find(std::string_view name) const;
    /// The same. @param guess  the slot that is tried first; any number will do.
    std::size_t Find(std::string_view name, std::size_t guess) const {
        return guess < _names.size() && *_names[guess] == name ? guess : Find(name);
    }
    /// Only before the layout is finished. @param name  a new one. @return its slot.
    std::size_t Add(std::string_view name);

    void Finish();
    bool IsFinished() const { return _isFinished; }
    /// All names in ascending order, once the layout is finished.
    const std::vector<Entry>& Entries() const { return _entries; }

    /// Calls visit(const Entry&) for all names in ascending order.
    template <typename Visit>
    void ForEach(const Visit& visit) const {
        for (const auto& [name, slot] : _slots) {
            visit(Entry{&name, slot});
        }
    }

private:
    // A tree and no sorted array, so that a structure with a hundred thousand names grows in no more
    // than n log n steps, whatever their order.
    std::map<std::string, std::size_t, std::less<>> _slots;
    std::vector<const std::string*> _names;  // by slot
    std::vector<Entry> _entries;
    std::shared_ptr<const std::string> _typeName;
    bool _isFinished = false;
};

}  // namespace Corvel::MetaObj
