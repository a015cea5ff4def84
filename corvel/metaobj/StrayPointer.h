#pragma once

#include <type_traits>

namespace Corvel::MetaObj {

/// Selects the deleted member of an overload family that takes bool: a pointer of the type P would
/// silently become `true` there. Pointers to characters are no strays, they are texts.
template <typename P>
using IfStrayPointer =
    std::enable_if_t<(std::is_pointer_v<P> && !std::is_convertible_v<P, const char*>) ||
                         std::is_member_pointer_v<P>,
                     int>;

}  // namespace Corvel::MetaObj
