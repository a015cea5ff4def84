// Takes its arguments for a command line, prompts for the secrets "password" (-p) and "token", and
// prints the command's options.
#include <sys/resource.h>

#include <iostream>
#include <memory>

#include "corvel/autocli/OptionParser.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/ParameterSpec.h"

namespace {

std::shared_ptr<Corvel::CallSpec::ParameterSpec> NewSecret(const char* name) {
    using Corvel::CallSpec::ParameterSpec;
    auto secret = ParameterSpec::New(name, Corvel::CallSpec::ParameterType::String);
    secret->SetSecret(true);
    return secret;
}

}  // namespace

int main(int argc, char** argv) {
    const rlimit noCoreFile = {0, 0};
    setrlimit(RLIMIT_CORE, &noCoreFile);

    const auto inputSpec = Corvel::CallSpec::InputSpec::New();
    const auto password = NewSecret("password");
    password->SetShortName("p");
    inputSpec->AddParameter(password);
    inputSpec->AddParameter(NewSecret("token"));

    Corvel::AutoCli::OptionParser parser;
    parser.ParseArgv(argc, argv);
    parser.SetInputSpec(inputSpec);
    for (const auto& [name, value] : parser.GetCommandParameters()) {
        std::cout << name << '=' << value << '\n';
    }
}
