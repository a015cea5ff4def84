#include "corvel/metaobj/FieldExtras.h"

#include <utility>

namespace Corvel::MetaObj {

const std::string& FieldExtras::Documentation(std::size_t slot) const {
    static const std::string sNone;
    return slot < _documentation.size() ? _documentation[slot] : sNone;
}

void FieldExtras::ReserveDocumentation(std::size_t slot) {
    if (slot >= _documentation.size()) {
        _documentation.resize(slot + 1);
    }
}

void FieldExtras::SetDocumentation(std::size_t slot, std::string&& documentation) noexcept {
    if (slot < _documentation.size()) {
        _documentation[slot] = std::move(documentation);
    }
}

std::shared_ptr<MetaObject> FieldExtras::Kept(std::size_t slot) const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return slot < _kept.size() ? _kept[slot] : nullptr;
}

std::shared_ptr<MetaObject> FieldExtras::Keep(std::size_t slot, std::shared_ptr<MetaObject> value) {
    const std::lock_guard<std::mutex> lock(_mutex);
    if (slot >= _kept.size()) {
        _kept.resize(slot + 1);
    }
    if (_kept[slot] == nullptr) {
        _kept[slot] = std::move(value);
    }
    return _kept[slot];
}

// No lock here and below: a structure is not changed while others read it.
void FieldExtras::DropReference(std::size_t slot) noexcept {
    if (slot < _kept.size()) {
        _kept[slot].reset();
    }
}

void FieldExtras::Clear(std::size_t slot) noexcept {
    SetDocumentation(slot, {});
    DropReference(slot);
}

void FieldExtras::Move(std::size_t from, std::size_t to) noexcept {
    if (from < _documentation.size()) {
        _documentation[to].swap(_documentation[from]);
    }
    if (from < _kept.size()) {
        _kept[to].swap(_kept[from]);
    }
}

}  // namespace Corvel::MetaObj
