#include <syslog.h>

#include <cstdlib>
#include <filesystem>
#include <list>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/CommandInput.h"
#include "corvel/autocli/CommandOutput.h"
#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/ShellCommand.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaObject.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {

namespace {

using CallSpec::Input;
using CallSpec::InputSpec;
using CallSpec::Output;
using CallSpec::OutputSpec;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;
using Testing::ThrownText;
using Errors = std::list<std::string>;

/// What was run, as the listener hears of it.
std::vector<std::string> commandLines;

class Extension : public testing::Test {
protected:
    void SetUp() override {
        if (const char* language = std::getenv("LANG")) {
            _language = language;
        }
        setenv("LANG", "C", 1);
        commandLines.clear();
        SetCommandExecListener([](const std::string& line, int) { commandLines.push_back(line); });
        spec->AddParameter(ParameterSpec::New("text", ParameterType::String));
        command->SetInputSpec(spec);
    }
    void TearDown() override {
        SetCommandExecListener(nullptr);
        if (_language) {
            setenv("LANG", _language->c_str(), 1);
        } else {
            unsetenv("LANG");
        }
    }

    void Run(const std::string& line) {
        command->SetExecuteCommand(line);
        command->ExecuteInternal(input, output);
    }

    Errors ErrorsOf(const std::string& line) {
        Run(line);
        return output->GetErrors();
    }

    std::shared_ptr<InputSpec> spec = InputSpec::New();
    std::shared_ptr<ExtensionCommand> command = ExtensionCommand::New();
    std::shared_ptr<Input> input = Input::New();
    std::shared_ptr<Output> output = Output::New();

private:
    std::optional<std::string> _language;
};

/// Values made of everything that has a meaning to the shell; run as code, they print "code".
std::vector<std::string> HostileValues() {
    std::vector<std::string> values = {"", "-e", "a b", "#", "it's", "a\\", "${HOME}", "~", "*"};
    for (const char* before : {"", "'", "\"", "\\", " #", "\\'", "\\\""}) {
        for (const char* opening : {";", "\n", "&", "|", "`", "$(", "' #\n", "\"\n", ")\n"}) {
            for (const char* closing : {"", ";", "`", ")", "'", "\\"}) {
                values.push_back(std::string(before) + opening + "echo code" + closing);
            }
        }
    }
    return values;
}

/// The message for a command line that printed nothing.
std::string NoData(const std::string& line, const std::string& number) {
    return "Got no data from process.\nCommand \"" + line +
           "\"\n\xd0\xb5xited with error code: " + number;
}

// --- Declaration -------------------------------------------------------------------------------

TEST(ExtensionCommand, NewOneHasEmptyTemplatesAndNoSpecifications) {
    const auto command = ExtensionCommand::New();
    EXPECT_EQ(command->SubstituteInput(Input::New(), false), "");
    EXPECT_EQ(command->SubstituteInput(Input::New(), true), "");
    EXPECT_EQ(ThrownText([&] { command->GetInputSpecInternal(); }),
              "Request for NULL InputSpec.  Extension command is incomplete and will not work");
    EXPECT_EQ(ThrownText([&] { command->GetOutputSpecInternal(); }),
              "Request for NULL OutputSpec.  Extension command is incomplete and will not work");
}

TEST(ExtensionCommand, TemplatesAreTakenFromAllKindsOfText) {
    const auto command = ExtensionCommand::New();
    const std::string text = "from a string";
    command->SetExecuteCommand(text);
    command->SetStdin(text);
    EXPECT_EQ(command->SubstituteInput(nullptr, false), "from a string");
    EXPECT_EQ(command->SubstituteInput(nullptr, true), "from a string");
    command->SetExecuteCommand("from a literal");
    command->SetStdin("from a literal");
    EXPECT_EQ(command->SubstituteInput(nullptr, false), "from a literal");
    EXPECT_EQ(command->SubstituteInput(nullptr, true), "from a literal");
    command->SetExecuteCommand(nullptr);
    command->SetStdin(nullptr);
    EXPECT_EQ(command->SubstituteInput(nullptr, false), "");
    EXPECT_EQ(command->SubstituteInput(nullptr, true), "");
}

TEST(ExtensionCommand, SpecificationsAreTheOnesThatWereSet) {
    const auto command = ExtensionCommand::New();
    const auto inputSpec = InputSpec::New();
    const auto outputSpec = OutputSpec::New();
    command->SetInputSpec(inputSpec);
    command->SetOutputSpec(outputSpec);
    EXPECT_EQ(command->GetInputSpecInternal(), inputSpec);
    EXPECT_EQ(command->GetOutputSpecInternal(), outputSpec);
    EXPECT_EQ(command->GetInputSpec(), inputSpec);
    EXPECT_EQ(command->GetOutputSpec(), outputSpec);
    ASSERT_EQ(inputSpec->GetParameters().size(), 1U);
    EXPECT_EQ(inputSpec->GetParameters().front()->GetName(), "help");
}

TEST(ExtensionCommand, SanitizesAsTheFreeFunctionsDo) {
    EXPECT_EQ(ExtensionCommand::SanitizeInput("a;b"), "a\\;b");
    EXPECT_EQ(ExtensionCommand::SanitizeChar("it's", '\''), "its");
}

// --- Execution ---------------------------------------------------------------------------------

TEST_F(Extension, PrintedDocumentBecomesTheRootObject) {
    EXPECT_EQ(ErrorsOf("echo '<output><int>42</int></output>'"), Errors());
    ASSERT_NE(output->GetRootObject(), nullptr);
    EXPECT_EQ(output->GetRootObject()->GetType(), MetaObj::MetaType::Int);
    EXPECT_EQ(output->GetRootObject()->ToString(), "42");
}

TEST_F(Extension, ExitStatusAloneIsNoError) {
    EXPECT_EQ(ErrorsOf("echo '<output><int>42</int></output>'; exit 3"), Errors());
    EXPECT_NE(output->GetRootObject(), nullptr);
}

TEST_F(Extension, ValuesReachCommandLineAndStandardInput) {
    input->AddParameter("text", "a;b");
    input->SetInputSpec(spec);
    command->SetStdin("<string>$val{text}</string>");
    EXPECT_EQ(ErrorsOf("echo \"<output>\"; cat; echo \"</output>\"; : $val{text}"), Errors());
    ASSERT_NE(output->GetRootObject(), nullptr);
    EXPECT_EQ(output->GetRootObject()->ToString(), "a;b");
    EXPECT_EQ(commandLines,
              (std::vector<std::string>{"echo \"<output>\"; cat; echo \"</output>\"; : a\\;b"}));
}

TEST_F(Extension, ValueBetweenItsOwnSingleQuotesIsOneWordToTheShellWithoutThem) {
    command->SetExecuteCommand(
        "printf '[%s]' '$val{text}' end; v='$val{text}'; printf '[%s]' \"$v\" end");
    for (const std::string& value : HostileValues()) {
        const auto call = Input::New();
        call->AddParameter("text", value);
        call->SetInputSpec(spec);
        std::string printed;
        AutoCli_ShellCmd(command->SubstituteInput(call, false), printed, "");
        const std::string words = "[" + SanitizeChar(value, '\'') + "][end]";
        EXPECT_EQ(printed, words + words);
    }
}

TEST_F(Extension, ValuesInsideDoubleQuotesAreNoCodeToTheShell) {
    spec->AddParameter(ParameterSpec::New("texts", ParameterType::StringList));
    command->SetExecuteCommand(
        "exec 3>&1; echo() { printf %s \"$1\" >&3; }\n"
        "printf %s \"$val{text}\" $list{texts,',',true} > /dev/null; echo done");
    for (const std::string& value : HostileValues()) {
        const auto call = Input::New();
        call->AddParameter("text", value);
        call->AddParameter("texts", value);
        call->AddParameter("texts", "last");
        call->SetInputSpec(spec);
        std::string printed;
        AutoCli_ShellCmd(command->SubstituteInput(call, false), printed, "");
        EXPECT_EQ(printed, "done") << value;
    }
}

TEST_F(Extension, LeadingErrorLinesBecomeMessagesAndNothingIsParsed) {
    EXPECT_EQ(ErrorsOf("echo 'ERROR:disk busy'; echo ERROR:retry; "
                       "echo '<output><int>42</int></output>'"),
              (Errors{"disk busy", "retry"}));
    EXPECT_EQ(output->GetRootObject(), nullptr);
}

TEST_F(Extension, ErrorLinesMayBeEmptyOrWithoutNewline) {
    EXPECT_EQ(ErrorsOf("printf 'ERROR:\\nERROR: blank\\nERROR:last'"),
              (Errors{"", " blank", "last"}));
}

TEST_F(Extension, ErrorLineAfterAnotherLineIsNone) {
    EXPECT_EQ(ErrorsOf("printf 'ERROR:first\\n\\nERROR:second\\n'"), (Errors{"first"}));
}

TEST_F(Extension, ErrorMarkIsTakenLiterally) {
    EXPECT_EQ(ErrorsOf("printf ' ERROR:x'"), Errors());
    EXPECT_EQ(ErrorsOf("printf 'Error:x'"), Errors());
    EXPECT_EQ(ErrorsOf("printf 'ERROR x'"), Errors());
}

TEST_F(Extension, NoOutputAtAllIsAnErrorThatTellsTheCommand) {
    EXPECT_EQ(ErrorsOf("true"), (Errors{NoData("true", "1")}));
    EXPECT_EQ(output->GetRootObject(), nullptr);
}

TEST_F(Extension, NumberForNoOutputIsNotTheExitCode) {
    EXPECT_EQ(ErrorsOf("exit 5"), (Errors{NoData("exit 5", "1")}));
}

TEST_F(Extension, NumberForNoOutputIsZeroAfterASignal) {
    EXPECT_EQ(ErrorsOf("kill -TERM $$"), (Errors{NoData("kill -TERM $$", "0")}));
}

TEST_F(Extension, NoOutputGoesToTheSystemLogAsItIs) {
    openlog("corvel-test", LOG_PERROR, LOG_USER);
    testing::internal::CaptureStderr();
    Run("true %s %n");
    const std::string logged = testing::internal::GetCapturedStderr();
    openlog(nullptr, 0, LOG_USER);
    closelog();
    EXPECT_EQ(logged, "corvel-test: " + NoData("true %s %n", "1") + "\n");
}

TEST_F(Extension, DocumentThatHoldsNoValueIsAnErrorWithTheReason) {
    EXPECT_EQ(
        ErrorsOf("echo '<output><integer>1</integer></output>'"),
        (Errors{"Unable to parse output of Extension Command: Error parsing command output.  "
                "Unable to build a proper metaobject from output tag.  output must contain "
                "properly formatted tags of type bool, int, string, structure and list. Error was "
                ": Unable to make a MetaObject from a node with tag 'integer'"}));
    EXPECT_EQ(output->GetRootObject(), nullptr);
}

TEST_F(Extension, TextThatIsNoDocumentYieldsNoObjectAndNoError) {
    output->SetRootObject(MetaObj::MetaInt::New(7));
    EXPECT_EQ(ErrorsOf("echo no document"), Errors());
    ASSERT_NE(output->GetRootObject(), nullptr);
    EXPECT_EQ(output->GetRootObject()->ToString(), "7");
}

TEST_F(Extension, OutputThatHoldsAnErrorStartsNoShell) {
    output->AddErrorMessage("invalid value");
    EXPECT_EQ(ErrorsOf("echo ERROR:run"), (Errors{"invalid value"}));
    EXPECT_TRUE(commandLines.empty());
}

TEST_F(Extension, LanguageIsPutInFrontOnlyWhenTheEnvironmentHasNone) {
    Run("echo ERROR:x");
    setenv("LANG", "", 1);
    output = Output::New();
    Run("echo ERROR:x");
    unsetenv("LANG");
    output = Output::New();
    EXPECT_EQ(ErrorsOf("sh -c 'echo ERROR:$LANG'"), (Errors{"en_US.UTF-8"}));
    EXPECT_EQ(commandLines,
              (std::vector<std::string>{
                  "echo ERROR:x", "echo ERROR:x", "LANG=en_US.UTF-8 sh -c 'echo ERROR:$LANG'"}));
}

TEST_F(Extension, MessageForNoOutputShowsTheLineWithItsLanguage) {
    unsetenv("LANG");
    EXPECT_EQ(ErrorsOf("true"), (Errors{NoData("LANG=en_US.UTF-8 true", "1")}));
}

TEST_F(Extension, UserIsNamedToTheShellWhenTheContextIsSupported) {
    input->SetContext("user", "o'neil");
    spec->SetContextSupported("user");
    EXPECT_EQ(ErrorsOf("sh -c 'echo ERROR:$QUEN_USERNAME'"), (Errors{"o'neil"}));
    EXPECT_EQ(
        commandLines,
        (std::vector<std::string>{"QUEN_USERNAME='o'\\''neil' sh -c 'echo ERROR:$QUEN_USERNAME'"}));
}

TEST_F(Extension, UserPrefixIsNoPartOfTheMessageForNoOutput) {
    input->SetContext("user", "ann");
    spec->SetContextSupported("user");
    unsetenv("LANG");
    EXPECT_EQ(ErrorsOf("true"), (Errors{NoData("LANG=en_US.UTF-8 true", "1")}));
    EXPECT_EQ(commandLines,
              (std::vector<std::string>{"QUEN_USERNAME='ann' LANG=en_US.UTF-8 true"}));
}

TEST_F(Extension, UserIsNotNamedWithoutSupportOrWithoutAName) {
    input->SetContext("user", "ann");
    Run("echo ERROR:x");
    spec->SetContextSupported("user");
    input = Input::New();
    output = Output::New();
    Run("echo ERROR:x");
    input = nullptr;
    output = Output::New();
    Run("echo ERROR:x");
    EXPECT_EQ(commandLines, std::vector<std::string>(3, "echo ERROR:x"));
}

TEST_F(Extension, FailureToStartTheChildPassesThrough) {
    const std::string line(200000, ':');
    EXPECT_EQ(ThrownText([&] { Run(line); }),
              "Failed to call process '" + line + "': Argument list too long");
    EXPECT_FALSE(output->HasError());
}

TEST_F(Extension, ValueWithANulStartsNoShell) {
    const Testing::TemporaryDirectory directory;
    input->AddParameter("text", std::string("x\0y", 3));
    const std::string line = "echo > " + directory.File("ran") + "; : ";
    EXPECT_EQ(ThrownText([&] { Run(line + "$val{text}"); }),
              "Failed to call process '" + line + "x");
    EXPECT_FALSE(std::filesystem::exists(directory.File("ran")));
}

TEST_F(Extension, WithoutInputSpecificationNoShellIsStarted) {
    const auto incomplete = ExtensionCommand::New();
    incomplete->SetExecuteCommand("echo ERROR:x");
    EXPECT_EQ(ThrownText([&] { incomplete->ExecuteInternal(input, output); }),
              "Request for NULL InputSpec.  Extension command is incomplete and will not work");
    EXPECT_TRUE(commandLines.empty());
}

// --- As the dispatcher calls it ----------------------------------------------------------------

TEST_F(Extension, ExecuteTellsTheFailureOfTheChildWithThePathOfTheCommand) {
    const auto commandInput = CommandInput::New();
    commandInput->SetCommandPath({"storage", "list"});
    const std::string line(200000, ':');
    command->SetExecuteCommand(line);
    command->Execute(commandInput, output);
    EXPECT_EQ(output->GetErrors(),
              (Errors{"Error on command storage list : Failed to call process '" + line +
                      "': Argument list too long"}));
}

TEST_F(Extension, ExecuteChecksTheResultAgainstTheOutputSpecification) {
    const auto outputSpec = OutputSpec::New();
    outputSpec->SetRootObject(MetaObj::MetaInt::New());
    command->SetOutputSpec(outputSpec);
    command->SetExecuteCommand("echo '<output><string>x</string></output>'");
    command->Execute(input, output);
    EXPECT_EQ(output->GetErrors(),
              (Errors{"Type mismatch in structure.  Expecting Int got String",
                      "Implementation error! The output of this command does not match the "
                      "declared output type, see errors above."}));
}

}  // namespace
}  // namespace Corvel::AutoCli
