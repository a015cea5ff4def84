#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/CommandInput.h"
#include "corvel/autocli/CommandOutput.h"
#include "corvel/autocli/Dispatcher.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/metaobj/MetaInt.h"

namespace Corvel::Testing {

/// Stands in the place of InputSpec::Validate, which always tells what it refuses.
bool RefuseQuietly(
    const CallSpec::InputSpec* spec,
    const std::shared_ptr<CallSpec::Input>& input,
    const std::shared_ptr<CallSpec::Output>& output) __asm__("__wrap_" CORVEL_INPUT_SPEC_VALIDATE);
[[gnu::used]] bool RefuseQuietly(const CallSpec::InputSpec* /*spec*/,
                                 const std::shared_ptr<CallSpec::Input>& /*input*/,
                                 const std::shared_ptr<CallSpec::Output>& /*output*/) {
    return false;
}

namespace {

using AutoCli::CommandInput;
using AutoCli::CommandOutput;
using testing::ElementsAre;
using testing::IsEmpty;

class QuietRefusal : public testing::Test {
protected:
    QuietRefusal() { _input->SetCommandPath({"quorcli", "command", "list"}); }

    AutoCli::Dispatcher _dispatcher;
    std::shared_ptr<CommandInput> _input = CommandInput::New();
    std::shared_ptr<CommandOutput> _output = CommandOutput::New();
};

TEST_F(QuietRefusal, OfAnInputIsAnErrorOfTheCommand) {
    EXPECT_FALSE(_dispatcher.ExecuteCommand(_input, _output));
    EXPECT_THAT(_output->GetErrors(),
                ElementsAre("Command output has no root object nor error messages.  This is a "
                            "problem with the command and should be repaired."));
}

TEST_F(QuietRefusal, IsNoErrorWhereTheOutputHasARootObject) {
    _output->SetRootObject(MetaObj::MetaInt::New(1));
    EXPECT_TRUE(_dispatcher.ExecuteCommand(_input, _output));
    EXPECT_THAT(_output->GetErrors(), IsEmpty());
}

}  // namespace
}  // namespace Corvel::Testing
