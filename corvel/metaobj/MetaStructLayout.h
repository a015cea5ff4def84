#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::MetaObj {

/// The field names of structures: one layout serves a definition and all that is made from it.
///
/// A tree and no sorted array, so that a structure with a hundred thousand names grows in no more
/// than n log n steps, whatever their order.
struct MetaStruct::Layout {
    std::map<std::string, std::size_t, std::less<>> slots;  // numbered 0, 1, .. as they come
    std::vector<StructView::Entry> entries;  // all of `slots`, once no more names are to come
};

}  // namespace Corvel::MetaObj
