#pragma once

#include <memory>

#include "corvel/corvel.h"
#include "fuzz/support/XmlTree.h"

namespace Corvel::Fuzz {

/// The parameters of a command, with their constraints, and the contexts that it supports; raises
/// the first fault as the library does.
std::shared_ptr<CallSpec::InputSpec> ReadInputSpec(const xmlNode* node);

}  // namespace Corvel::Fuzz
