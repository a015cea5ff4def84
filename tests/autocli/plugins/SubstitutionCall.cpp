#include "tests/autocli/plugins/SubstitutionCall.h"

#include "corvel/callspec/InputSpec.h"
#include "corvel/metaobj/CorvelException.h"

namespace Corvel::Testing {

using AutoCli::ExtensionCommand;
using CallSpec::Input;
using CallSpec::InputSpec;
using CallSpec::ParameterSpec;

Call NewCall(const std::string& text, const Values& values) {
    const auto spec = InputSpec::New();
    for (const auto& [name, type] : kParameters) {
        spec->AddParameter(ParameterSpec::New(name, type));
    }
    Call call{ExtensionCommand::New(), Input::New()};
    call.command->SetInputSpec(spec);
    call.command->SetExecuteCommand(text);
    call.command->SetStdin(text);
    for (const auto& [name, texts] : values) {
        for (const std::string& value : texts) {
            call.input->AddParameter(name, value);
        }
    }
    call.input->SetInputSpec(spec);
    return call;
}

std::string Expand(const std::string& text, const Values& values, bool forStdin) {
    const Call call = NewCall(text, values);
    try {
        return call.command->SubstituteInput(call.input, forStdin);
    } catch (const CorvelException& e) {
        return std::string("raised: ") + e.what();
    }
}

}  // namespace Corvel::Testing
