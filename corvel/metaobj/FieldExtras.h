#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "corvel/metaobj/MetaObject.h"

namespace Corvel::MetaObj {

/// What few structures have beside the values of their fields: documentation, and the shared values
/// that were made of plain ones because somebody asked for a reference. All of it by slot; an absent
/// field has neither.
///
/// Threads: the shared values can be found and kept by several threads at once.
class FieldExtras {
public:
    /// @return the empty text for a field without.
    const std::string& Documentation(std::size_t slot) const;
    /// Makes room, so that SetDocumentation cannot fail.
    void ReserveDocumentation(std::size_t slot);
    /// Without room there is nothing that an empty text could replace.
    void SetDocumentation(std::size_t slot, std::string&& documentation) noexcept;

    /// @return an empty reference when none is kept.
    std::shared_ptr<MetaObject> Kept(std::size_t slot) const;
    /// @return the one that is kept: that of another thread, if that was quicker.
    std::shared_ptr<MetaObject> Keep(std::size_t slot, std::shared_ptr<MetaObject> value);

    /// A new value has no kept reference yet.
    void DropReference(std::size_t slot) noexcept;
    /// For a field that is gone.
    void Clear(std::size_t slot) noexcept;
    /// The field moves to the slot of an absent one.
    void Move(std::size_t from, std::size_t to) noexcept;

private:
    std::vector<std::string> _documentation;         // ends before undocumented ones
    std::vector<std::shared_ptr<MetaObject>> _kept;  // the same; changed only under the mutex
    mutable std::mutex _mutex;
};

}  // namespace Corvel::MetaObj
