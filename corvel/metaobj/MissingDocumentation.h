#pragma once

#include <string>

namespace Corvel::MetaObj {

/// "Documentation missing", what stands in the place of a documentation that is empty. Raises
/// std::bad_alloc where there was no memory for it up to now.
const std::string& MissingDocumentation();

/// The same text, which is empty until there is memory for it: for initialisers, which must not
/// raise anything.
const std::string& MissingDocumentationAtLoad() noexcept;

}  // namespace Corvel::MetaObj
