#include "corvel/callspec/CallTargetSpec.h"

namespace Corvel::CallSpec {

CallTargetSpec::CallTargetSpec() = default;

CallTargetSpec::~CallTargetSpec() = default;

}  // namespace Corvel::CallSpec
