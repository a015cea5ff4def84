#pragma once

#include <memory>

#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/platform/Export.h"

namespace Corvel::CallSpec {

/// Whatever can be called: it declares the input that it takes and the output that it gives.
class CORVEL_EXPORT CallTargetSpec {
public:
    CallTargetSpec(const CallTargetSpec&) = delete;
    CallTargetSpec& operator=(const CallTargetSpec&) = delete;
    virtual ~CallTargetSpec();

    /// Never empty.
    virtual std::shared_ptr<InputSpec> GetInputSpec() = 0;
    /// Never empty.
    virtual std::shared_ptr<OutputSpec> GetOutputSpec() = 0;

protected:
    CallTargetSpec();
};

}  // namespace Corvel::CallSpec
