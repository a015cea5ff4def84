#include <memory>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/Command.h"
#include "corvel/autocli/CommandInput.h"
#include "corvel/autocli/CommandOutput.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/TestCommand.h"
#include "tests/autocli/VirtualSlot.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using CallSpec::Input;
using CallSpec::Output;
using MetaObj::MetaInt;
using MetaObj::MetaStruct;
using testing::ElementsAre;
using Testing::TestCommand;
using Testing::ThrownText;
using Testing::VirtualSlot;
using Reference = std::shared_ptr<Output>;

constexpr char kMismatch[] =
    "Implementation error! The output of this command does not match the declared output type, see "
    "errors above.";

std::shared_ptr<CommandInput> NewInput() {
    std::shared_ptr<CommandInput> input = CommandInput::New();
    input->SetCommandPath({"storage", "core", "list"});
    return input;
}

/// A command that declares an integer.
class CommandExecution : public testing::Test {
protected:
    CommandExecution() {
        _command.SetName("list");
        _command.outputSpec->SetRootObject(MetaInt::New(0));
    }

    TestCommand _command;
    Reference _output = CommandOutput::New();
};

TEST_F(CommandExecution, RunsTheWorkAndAcceptsADeclaredResult) {
    _command.work = [](const auto&, const Reference& output) {
        output->SetRootObject(MetaInt::New(7));
    };
    _command.Execute(NewInput(), _output);
    EXPECT_EQ(_command.executions, 1);
    EXPECT_FALSE(_output->HasError());
    EXPECT_EQ(_output->GetRootObject()->ToString(), "7");
    EXPECT_EQ(_output->GetOutputType(), Output::Normal);
}

TEST_F(CommandExecution, GivesHelpInsteadOfRunningEvenWhenParametersAreMissing) {
    _command.inputSpec->AddParameter(
        CallSpec::ParameterSpec::New("required", CallSpec::ParameterType::String));
    const std::shared_ptr<CommandInput> input = NewInput();
    input->AddParameter("help", "");
    _command.Execute(input, _output);
    EXPECT_EQ(_command.executions, 0);
    EXPECT_EQ(_command.outputSpecRequests, 0);
    EXPECT_FALSE(_output->HasError());
    EXPECT_EQ(_output->GetOutputType(), Output::Help);
    EXPECT_EQ(std::dynamic_pointer_cast<MetaStruct>(_output->GetRootObject())->GetTypeName(),
              "QuorCliCommandHelp");
}

TEST_F(CommandExecution, TurnsAnExceptionIntoOneErrorWithoutValidation) {
    _command.work = [](const auto&, const auto&) { throw CorvelException("it broke"); };
    _command.Execute(NewInput(), _output);
    EXPECT_THAT(_output->GetErrors(), ElementsAre("Error on command storage core list : it broke"));
    EXPECT_EQ(_command.outputSpecRequests, 0);
}

TEST_F(CommandExecution, TurnsAnyStandardExceptionIntoAnError) {
    _command.work = [](const auto&, const auto&) { throw std::out_of_range("too far"); };
    _command.Execute(NewInput(), _output);
    EXPECT_THAT(_output->GetErrors(), ElementsAre("Error on command storage core list : too far"));
}

TEST_F(CommandExecution, NamesTheCommandItselfForAnInputThatKnowsNoPath) {
    _command.work = [](const auto&, const auto&) { throw CorvelException("it broke"); };
    _command.Execute(nullptr, _output);
    _command.Execute(Input::New(), _output);
    EXPECT_THAT(
        _output->GetErrors(),
        ElementsAre("Error on command list : it broke", "Error on command list : it broke"));
}

TEST_F(CommandExecution, LetsExceptionsOfOtherKindsPass) {
    _command.work = [](const auto&, const auto&) { throw 1; };
    EXPECT_THROW(_command.Execute(NewInput(), _output), int);
    EXPECT_FALSE(_output->HasError());
}

TEST_F(CommandExecution, KeepsTheErrorsOfTheCommandWithoutValidation) {
    _command.work = [](const auto&, const Reference& output) {
        output->AddErrorMessage("no such thing");
    };
    _command.Execute(NewInput(), _output);
    EXPECT_THAT(_output->GetErrors(), ElementsAre("no such thing"));
    EXPECT_EQ(_command.outputSpecRequests, 0);
}

TEST_F(CommandExecution, TellsWhyAResultOfTheWrongTypeDoesNotMatchAndKeepsIt) {
    const std::shared_ptr<MetaStruct> declared = MetaStruct::New("Thing");
    declared->SetField("a", 1);
    declared->SetField("b", 2);
    _command.outputSpec->SetRootObject(declared);
    const std::shared_ptr<MetaStruct> result = MetaStruct::New("Thing");
    result->SetField("a", 1);
    _command.work = [&result](const auto&, const Reference& output) {
        output->SetRootObject(result);
    };
    _command.Execute(NewInput(), _output);
    EXPECT_THAT(_output->GetErrors(),
                ElementsAre("Mismatch on number of fields set in struct. Expected 2 found 1",
                            "Missing field in input: b",
                            kMismatch));
    EXPECT_EQ(_output->GetRootObject(), result);
}

TEST_F(CommandExecution, TellsThatThereIsNoResult) {
    _command.Execute(NewInput(), _output);
    EXPECT_THAT(
        _output->GetErrors(),
        ElementsAre("No root object set for output. The command did not provide proper output.",
                    kMismatch));
}

TEST_F(CommandExecution, TellsThatNothingWasDeclared) {
    _command.outputSpec = CallSpec::OutputSpec::New();
    _command.work = [](const auto&, const Reference& output) {
        output->SetRootObject(MetaInt::New(7));
    };
    _command.Execute(NewInput(), _output);
    EXPECT_THAT(_output->GetErrors(),
                ElementsAre("No root object set for output spec. Root object for output spec must "
                            "be set for proper validation of output.",
                            kMismatch));
}

TEST_F(CommandExecution, WithoutOutputSpecificationThrows) {
    _command.outputSpec = nullptr;
    EXPECT_EQ(ThrownText([&] { _command.Execute(NewInput(), _output); }),
              "The command 'list' has no output specification");
}

TEST(Command, KeepsTheOrderOfItsVirtualOperations) {
    EXPECT_EQ(VirtualSlot(&Command::Execute), 15U);
    EXPECT_EQ(VirtualSlot(&Command::ExecuteInternal), 16U);
}

}  // namespace
}  // namespace Corvel::AutoCli
