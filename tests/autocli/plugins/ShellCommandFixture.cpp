#include "tests/autocli/plugins/ShellCommandFixture.h"

#include "corvel/autocli/plugins/ShellCommand.h"
#include "tests/support/ProcessState.h"
#include "tests/support/ThrownText.h"

namespace Corvel::Testing {

std::set<int> ShellCommand::_sDescriptorsBefore;
std::vector<std::pair<std::string, int>> ShellCommand::_sHeard;

void ShellCommand::SetUp() {
    _sDescriptorsBefore = OpenDescriptors();
}

void ShellCommand::TearDown() {
    AutoCli::SetChildRpNukOptionMaker(nullptr);
    AutoCli::SetCommandExecListener(nullptr);
    EXPECT_EQ(OpenDescriptors(), _sDescriptorsBefore);
    EXPECT_FALSE(HasChild());
}

std::string ShellCommand::OutputOf(const std::string& command, const std::string& input) {
    std::string output;
    AutoCli::AutoCli_ShellCmd(command, output, input);
    return output;
}

std::string ShellCommand::FailureOf(const std::string& command, const std::string& input) {
    return ThrownText([&] { OutputOf(command, input); });
}

void ShellCommand::Listen() {
    _sHeard.clear();
    AutoCli::SetCommandExecListener(
        [](const std::string& command, int status) { _sHeard.emplace_back(command, status); });
}

}  // namespace Corvel::Testing
