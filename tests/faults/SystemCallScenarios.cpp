#include "tests/faults/SystemCallScenarios.h"

#include <string>

#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {

namespace {

const std::string kData = CORVEL_FAULTS_DATA;
const std::string kLibrary = CORVEL_TEST_PLUGINS "/Greeting.so";

/// Every line shows what a line before it has left open.
Scenario OpenDescriptorsOfASession() {
    return {.name = "open descriptors of a session",
            .arguments = {"--plugin", kData + "/state.xml", "--input", "STDIN"},
            .input =
                "state descriptors\n"
                "--plugin " +
                kLibrary + " --plugin-dir " + kData +
                "/plugins state descriptors\n"
                "state descriptors\n",
            .lineCount = 3};
}

/// The loader would map it, and the process would end by SIGBUS.
Scenario LibraryThatIsCutShort() {
    static const TemporaryDirectory folder;
    const std::string library = folder.Write("cut.so", ReadFile(kLibrary).substr(0, 4096));
    return {"library that is cut short",
            {"--plugin", library, "--formatter", "simple", "quorcli", "command", "list"}};
}

std::vector<Scenario> MakeScenarios() {
    std::vector<Scenario> scenarios = Scenarios();
    scenarios.push_back(OpenDescriptorsOfASession());
    scenarios.push_back(LibraryThatIsCutShort());
    return scenarios;
}

}  // namespace

const std::vector<Scenario>& SystemCallScenarios() {
    static const std::vector<Scenario> scenarios = MakeScenarios();
    return scenarios;
}

}  // namespace Corvel::Testing
