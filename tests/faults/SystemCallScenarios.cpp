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

Scenario LinesOfAFile() {
    static const TemporaryDirectory folder;
    const std::string lines = folder.Write("lines", "call echo -t one\ncall echo -t last\n");
    return {.name = "lines of a file",
            .arguments = {"--plugin", kData + "/plugins/calls.xml", "--input", lines},
            .lineCount = 2};
}

Scenario FolderInAPluginFolder() {
    static const TemporaryDirectory folder;
    folder.Write("disks.xml", ReadFile(kData + "/plugins/disks.xml"));
    folder.Write("lib64/users.xml", ReadFile(kData + "/plugins/users.xml"));
    return {"folder in a plug-in folder",
            {"--plugin-dir", folder.Path(), "--formatter", "simple", "quorcli", "command", "list"}};
}

/// More than a stream's buffer holds, and less than the pipes to and from the child.
Scenario LongText() {
    return {
        "long text",
        {"--plugin", kData + "/state.xml", "state", "copy", "--text", std::string(20'000, 'x')}};
}

std::vector<Scenario> MakeScenarios() {
    std::vector<Scenario> scenarios = Scenarios();
    for (const auto& make : {OpenDescriptorsOfASession,
                             LibraryThatIsCutShort,
                             LinesOfAFile,
                             FolderInAPluginFolder,
                             LongText}) {
        scenarios.push_back(make());
    }
    return scenarios;
}

}  // namespace

const std::vector<Scenario>& SystemCallScenarios() {
    static const std::vector<Scenario> scenarios = MakeScenarios();
    return scenarios;
}

}  // namespace Corvel::Testing
