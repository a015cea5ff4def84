#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "corvel/metaobj/ValueView.h"

namespace Corvel::AutoCli {

/// Finds the field of one name in many structures, by looking first where the structure before had
/// it: structures that share their names have it at the same place.
///
/// Lifetime: no structure may change or end its life while others are searched.
class FieldFinder {
public:
    explicit FieldFinder(std::string name) : _name(std::move(name)) {}

    const std::string& Name() const { return _name; }

    /// @return the kind Null when there is no such field.
    MetaObj::ValueView Find(const MetaObj::StructView& fields) {
        if (_place >= fields.Count() || !IsNameOf(fields.Name(_place))) {
            _place = PlaceIn(fields);
            if (_place >= fields.Count() || !IsNameOf(fields.Name(_place))) {
                return {};
            }
        }
        return fields.Value(_place);
    }

private:
    bool IsNameOf(const std::string& fieldName) {
        if (&fieldName != _nameAtPlace) {
            if (fieldName != _name) {
                return false;
            }
            _nameAtPlace = &fieldName;
        }
        return true;
    }

    /// Where the field stands, or would stand: field names ascend.
    std::size_t PlaceIn(const MetaObj::StructView& fields) const {
        std::size_t begin = 0;
        std::size_t end = fields.Count();
        while (begin < end) {
            const std::size_t middle = begin + (end - begin) / 2;
            if (fields.Name(middle) < _name) {
                begin = middle + 1;
            } else {
                end = middle;
            }
        }
        return begin;
    }

    std::string _name;
    std::size_t _place = 0;
    const std::string* _nameAtPlace = nullptr;
};

}  // namespace Corvel::AutoCli
