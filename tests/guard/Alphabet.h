#pragma once

#include <string>
#include <vector>

namespace Corvel::Testing {

/// Fifty symbols: what means something to a shell or to the expansion of templates, what is a blank
/// to somebody, and little else.
const std::vector<std::string>& Alphabet();

}  // namespace Corvel::Testing
