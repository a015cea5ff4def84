#include <memory>

#include "corvel/autocli/Command.h"
#include "corvel/autocli/Namespace.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/Output.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/metaobj/MetaString.h"

/// Defined nowhere: a library is loaded although a function that it never calls is missing.
extern "C" void DefinedNowhere();

/// Visible to what is loaded later.
extern "C" __attribute__((visibility("default"))) int corvel_test_greeting_marker;
int corvel_test_greeting_marker = 42;

namespace {

using namespace Corvel;

class SayCommand : public AutoCli::Command {
public:
    SayCommand() { SetDescription("Say hello."); }
    std::shared_ptr<CallSpec::InputSpec> GetInputSpecInternal() override {
        return CallSpec::InputSpec::New();
    }
    std::shared_ptr<CallSpec::OutputSpec> GetOutputSpecInternal() override {
        auto outputSpec = CallSpec::OutputSpec::New();
        outputSpec->SetRootObject(MetaObj::MetaString::New(""));
        return outputSpec;
    }
    void ExecuteInternal(const std::shared_ptr<CallSpec::Input>& /*input*/,
                         const std::shared_ptr<CallSpec::Output>& output) override {
        if (corvel_test_greeting_marker == 0) {
            DefinedNowhere();
        }
        output->SetRootObject(MetaObj::MetaString::New("hello"));
    }
};

}  // namespace

extern "C" __attribute__((visibility("default"))) void AutoCli_RegisterNamespaces(
    // NOLINTNEXTLINE(performance-unnecessary-value-param): the signature of every entry point
    std::shared_ptr<AutoCli::Namespace> root) {
    const auto greeting = root->SubNamespace("greeting");
    greeting->SetDescription("Greetings.");
    greeting->RegisterNamespaceNode(std::shared_ptr<SayCommand>(new SayCommand), "say");
}
