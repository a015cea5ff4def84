#pragma once

#include <string>

#include "tests/autocli/plugins/SubstitutionCall.h"

namespace Corvel::Testing {

/// What stands in a template for an inserted value while its other tokens are replaced.
enum class InsertedValue {
    Bytes,   ///< Its own, which can be taken for those of the template.
    Opaque,  ///< One character that nothing in a template can be.
};

/// What a template comes to by regular expressions, one step after the other.
struct ReferenceExpansion {
    /// The expanded template, or the text of the exception.
    std::string text;
    /// Whether no value inserted as bytes held a character that has a meaning in a template.
    bool isHarmless;
};

ReferenceExpansion ExpandByExpressions(const std::string& text,
                                       const Call& call,
                                       bool forStdin,
                                       InsertedValue inserted);

}  // namespace Corvel::Testing
