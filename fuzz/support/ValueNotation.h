#pragma once

#include <memory>
#include <string_view>

#include "corvel/corvel.h"

namespace Corvel::Fuzz {

/// Builds a value from a text of one step a line, texts and names in caret notation:
///   "text     a string            {Disk  begins a structure of that type   }  ends it
///   #42       an integer          .Name  names the next field in it
///   ?1        a bool; 1 is true   ["     begins a list of strings          ]  ends it
///                                 [# [? [{  of integers, bools, structures
/// A list of structures has its first item as list structure. Steps that make no sense and items
/// that their list refuses are passed over, what is open at the end is ended there, and what follows
/// the value is passed over. Values are at most 40 levels deep.
///
/// @return the value; null if there is none.
std::shared_ptr<MetaObj::MetaObject> ReadValue(std::string_view text);

}  // namespace Corvel::Fuzz
