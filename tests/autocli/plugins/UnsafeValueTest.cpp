#include <cstdlib>
#include <list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/ShellCommand.h"
#include "corvel/callspec/Input.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/Output.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/MetaString.h"

namespace Corvel::AutoCli {

namespace {

using CallSpec::ParameterSpec;
using CallSpec::ParameterType;
using Errors = std::list<std::string>;

constexpr const char* kRefusal =
    "Error on command show : Unsafe value for parameter 'text': it would be read by the shell as "
    "code, not as data.";

/// What was run, as the listener hears of it.
std::vector<std::string> commandLines;

class UnsafeValue : public testing::Test {
protected:
    void SetUp() override {
        commandLines.clear();
        SetCommandExecListener([](const std::string& line, int) { commandLines.push_back(line); });
        const auto spec = CallSpec::InputSpec::New();
        spec->AddParameter(ParameterSpec::New("text", ParameterType::String));
        spec->SetContextSupported("user");
        command->SetName("show");
        command->SetInputSpec(spec);
        const auto result = CallSpec::OutputSpec::New();
        result->SetRootObject(MetaObj::MetaString::New(""));
        command->SetOutputSpec(result);
        command->SetStdin("$val{text}");
    }
    void TearDown() override { SetCommandExecListener(nullptr); }

    Errors ErrorsOf(const std::string& text, const std::string& value) {
        command->SetExecuteCommand(text);
        input->AddParameter("text", value);
        input->SetInputSpec(command->GetInputSpec());
        command->Execute(input, output);
        return output->GetErrors();
    }

    std::shared_ptr<ExtensionCommand> command = ExtensionCommand::New();
    std::shared_ptr<CallSpec::Input> input = CallSpec::Input::New();
    std::shared_ptr<CallSpec::Output> output = CallSpec::Output::New();
};

TEST_F(UnsafeValue, StartsNoShell) {
    EXPECT_EQ(ErrorsOf("touch \"a '$val{text}'\"", "$(id)"), Errors{kRefusal});
    EXPECT_TRUE(commandLines.empty());
    EXPECT_EQ(output->GetRootObject(), nullptr);
}

TEST_F(UnsafeValue, IsRefusedAlsoForAUser) {
    input->SetContext("user", "o'neil");
    EXPECT_EQ(ErrorsOf("cmd $val{text} --safe", "#"), Errors{kRefusal});
    EXPECT_TRUE(commandLines.empty());
}

TEST_F(UnsafeValue, IsRefusedAlsoBehindTheLanguage) {
    unsetenv("LANG");
    EXPECT_EQ(ErrorsOf("$val{text} id", ""), Errors{kRefusal});
    setenv("LANG", "C", 1);
}

TEST_F(UnsafeValue, IsNoneOnTheStandardInput) {
    EXPECT_EQ(ErrorsOf("printf '<o><string>'; cat; printf '</string></o>'", "$(id);#"), Errors{});
    EXPECT_EQ(output->GetRootObject()->ToString(), "$(id);#");
}

TEST_F(UnsafeValue, LeavesSubstitutionAsItIs) {
    command->SetExecuteCommand("touch \"a '$val{text}'\"");
    input->AddParameter("text", "$(id)");
    input->SetInputSpec(command->GetInputSpec());
    EXPECT_EQ(command->SubstituteInput(input, false), "touch \"a '$(id)'\"");
}

}  // namespace

}  // namespace Corvel::AutoCli
