#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::MetaObj {

/// A new structure without definition, being filled by a reader that meets the fields one after the
/// other. Does what MetaStruct::New and SetField do, with the same refusals, but makes no shared
/// objects of scalars, and costs no search where a structure has the fields of an earlier one, in
/// the same order.
///
/// Ownership: the structure is shared with whoever asks for it; all texts are copied.
/// Failures:  a field that is refused leaves the structure as it was.
class StructFilling {
public:
    /// @param like  a structure whose field names the new one is likely to have, such as the first
    ///   item of the same list; may be null, and may be of another type. To everybody else it stays
    ///   as it is. Nothing of it shows in the new structure but what is set.
    /// Raises
    ///   "Invalid name specified for MetaStruct: " + name
    explicit StructFilling(std::string_view typeName, MetaStruct* like = nullptr);

    /// Each adds the field, or replaces it.
    void SetInt(std::string_view name, long value);
    void SetBool(std::string_view name, bool value);
    /// A large text that need not be copied is better set as MetaString::New(std::move(text)).
    void SetText(std::string_view name, std::string_view value);
    /// Keeps this very reference. Raises
    ///   "Invalid NULL value was assigned to the field " + name + " in the structure " + type name
    void SetValue(std::string_view name, std::shared_ptr<MetaObject> value);

    /// @return the structure as filled so far.
    const std::shared_ptr<MetaStruct>& GetStructure() const { return _structure; }

private:
    void Set(std::string_view name, FieldSlot&& value);
    bool IsNext(std::string_view name) const;
    void Append(FieldSlot&& value);

    std::shared_ptr<MetaStruct> _structure;
    std::size_t _next = 0;  // the slot after the one that was set last
};

}  // namespace Corvel::MetaObj
