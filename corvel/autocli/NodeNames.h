#pragma once

#include <string>

#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

/// Whether a namespace or command may have this name: exactly the whole texts that match
/// ([a-z0-9]+[A-Z0-9]{0,1})+, which is camel case of ASCII letters and digits. Equivalently: at
/// least one character, nothing but letters and digits, no upper-case letter at the start and none
/// right after another. Takes time linear in the text, whatever it holds.
CORVEL_EXPORT bool AutoCli_IsValidName(const char* name);
CORVEL_EXPORT bool AutoCli_IsValidName(const std::string& name);

}  // namespace Corvel::AutoCli
