#include "corvel/autocli/Command.h"

#include <exception>

#include "corvel/autocli/CommandInput.h"
#include "corvel/callspec/Output.h"
#include "corvel/callspec/OutputSpec.h"

namespace Corvel::AutoCli {

namespace {

/// Holds the output against its declaration.
void CheckOutput(CallSpec::OutputSpec& declared, const std::shared_ptr<CallSpec::Output>& output) {
    std::list<std::string> errors;
    if (declared.Validate(output, &errors)) {
        return;
    }
    for (std::string& error : errors) {
        output->AddErrorMessage(std::move(error));
    }
    output->AddErrorMessage(
        "Implementation error! The output of this command does not match the declared output "
        "type, see errors above.");
}

}  // namespace

Command::Command() = default;

Command::~Command() = default;

void Command::Execute(const std::shared_ptr<CallSpec::Input>& input,
                      const std::shared_ptr<CallSpec::Output>& output) {
    if (input != nullptr && input->HasParameter("help")) {
        GenerateHelpOutput(input, output);
        return;
    }
    try {
        ExecuteInternal(input, output);
    } catch (const std::exception& e) {
        const auto* commandInput = dynamic_cast<const CommandInput*>(input.get());
        const std::string name =
            commandInput == nullptr ? GetName() : commandInput->GetCommandPathString();
        output->AddErrorMessage("Error on command " + name + " : " + e.what());
    }
    if (!output->HasError()) {
        CheckOutput(*GetOutputSpec(), output);
    }
}

}  // namespace Corvel::AutoCli
