#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "corvel/corvel.h"

namespace Corvel::Fuzz {

/// A value as one line that no other value has, for comparing values that came different ways:
///   n  i42  b1  s616263  [i1,i2]  {name:value,..}   names and texts in hexadecimal
/// With type names a structure and a list begin with theirs: 4469736b{..}, integer[..].
enum class TypeNames { Hidden, Shown };

std::string DumpValue(const std::shared_ptr<MetaObj::MetaObject>& value, TypeNames typeNames);

/// The bytes of a text in lower-case hexadecimal.
std::string ToHex(std::string_view text);

/// What a list is of, in a dump: boolean, integer, string, structure or list.
std::string_view ListWord(MetaObj::MetaType type);

}  // namespace Corvel::Fuzz
