#pragma once

#include <vector>

#include "tests/faults/Scenarios.h"

namespace Corvel::Testing {

/// The invocations in which system calls fail: those that are tried with every kind of fault, and
/// some that only these calls matter to.
const std::vector<Scenario>& SystemCallScenarios();

}  // namespace Corvel::Testing
