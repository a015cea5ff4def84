#pragma once

#include <memory>

#include "corvel/callspec/Output.h"
#include "corvel/metaobj/MetaObject.h"

namespace Corvel::AutoCli {

/// What a formatter is to print; no output counts as one whose root is null.
inline std::shared_ptr<MetaObj::MetaObject> OutputRoot(
    const std::shared_ptr<CallSpec::Output>& output) {
    return output == nullptr ? nullptr : output->GetRootObject();
}

}  // namespace Corvel::AutoCli
