#include <iostream>
#include <string>

#include <gtest/gtest.h>

#include "tests/faults/Scenarios.h"
#include "tests/faults/SystemCallScenarios.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {
namespace {

/// Preloaded into the program alone, not into what runs it on a terminal.
Intervention ShortTransfers(const std::string& report) {
    return {.prefix = {"/usr/bin/env",
                       "LD_PRELOAD=" CORVEL_SHORT_TRANSFERS,
                       "CORVEL_TRANSFERS=" + report}};
}

TEST(ShortTransfers, ChangeNothing) {
    const TemporaryDirectory folder;
    const std::string report = folder.File("report");
    int calls = 0;
    for (const Scenario& scenario : SystemCallScenarios()) {
        EXPECT_EQ(RunScenario(scenario, ShortTransfers(report)), RunScenario(scenario))
            << scenario.name;
        const std::string count = ReadFile(report);
        EXPECT_NE(count, "") << scenario.name;
        calls += std::stoi("0" + count);
        WriteFile(report, "");
    }
    EXPECT_GT(calls, 50'000);
    std::cout << "Short transfers and interruptions: " << calls << std::endl;
}

}  // namespace
}  // namespace Corvel::Testing
