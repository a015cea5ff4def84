#pragma once

#include <string>

#include "corvel/platform/Export.h"

namespace Corvel::MetaObj {

/// @return true exactly when the name is one or more ASCII letters and digits: [a-zA-Z0-9]+
CORVEL_EXPORT bool IsValidStructName(const std::string& name);
/// Null counts as the empty name.
CORVEL_EXPORT bool IsValidStructName(const char* name);

/// A hook that is deliberately permissive: field names are not restricted. @return true.
CORVEL_EXPORT bool IsValidFieldName(const std::string& name);
/// Null counts as the empty name.
CORVEL_EXPORT bool IsValidFieldName(const char* name);

}  // namespace Corvel::MetaObj
