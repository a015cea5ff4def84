#pragma once

#include <string>

namespace Corvel::Platform {

/// @return the system's text of an errno value, as strerror_r has it.
std::string ErrorText(int error);

}  // namespace Corvel::Platform
