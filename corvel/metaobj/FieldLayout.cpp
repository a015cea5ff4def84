#include "corvel/metaobj/FieldLayout.h"

#include <utility>

namespace Corvel::MetaObj {

FieldLayout::FieldLayout(std::shared_ptr<const std::string> typeName)
    : _typeName(std::move(typeName)) {}

std::size_t FieldLayout::Find(std::string_view name) const {
    const auto found = _slots.find(name);
    return found == _slots.end() ? kNoSlot : found->second;
}

std::size_t FieldLayout::Add(std::string_view name) {
    const std::size_t slot = _names.size();
    _names.push_back(nullptr);
    try {
        _names.back() = &_slots.emplace(name, slot).first->first;
    } catch (...) {
        _names.pop_back();
        throw;
    }
    return slot;
}

void FieldLayout::Finish() {
    if (_isFinished) {
        return;
    }
    std::vector<Entry> entries;
    entries.reserve(_slots.size());
    ForEach([&entries](const Entry& entry) { entries.push_back(entry); });
    _entries = std::move(entries);
    _isFinished = true;
}

}  // namespace Corvel::MetaObj
