// A host program with one command of its own: `embedding greeting get --name NAME`.

#include <exception>
#include <iostream>
#include <memory>
#include <string>

#include <corvel/corvel.h>

namespace {

using namespace Corvel::AutoCli;
using namespace Corvel::CallSpec;
using namespace Corvel::MetaObj;

std::shared_ptr<MetaStruct> MakeGreeting(const std::string& text) {
    auto greeting = MetaStruct::New("Greeting");
    greeting->SetField("Text", text);
    return greeting;
}

class GreetingGetCommand final : public Command {
public:
    GreetingGetCommand() {
        SetDescription("Greet somebody.");
        SetDefaultOutputFormatter("simple");
    }

    std::shared_ptr<InputSpec> GetInputSpecInternal() override {
        auto name = ParameterSpec::New("name", ParameterType::String);
        name->SetShortName("n");
        name->SetDescription("Whom to greet.");
        auto spec = InputSpec::New();
        spec->AddParameter(name);
        return spec;
    }

    std::shared_ptr<OutputSpec> GetOutputSpecInternal() override {
        auto spec = OutputSpec::New();
        spec->SetRootObject(MakeGreeting(""));
        return spec;
    }

    void ExecuteInternal(const std::shared_ptr<Input>& input,
                         const std::shared_ptr<Output>& output) override {
        output->SetRootObject(MakeGreeting("Hello, " + input->GetParameter("name") + "!"));
    }
};

}  // namespace

int main(int argc, char** argv) {
    CliDispatcher dispatcher;
    try {
        auto greeting = Namespace::New();
        greeting->SetDescription("Greetings.");
        dispatcher.GetRootNamespace()->RegisterNamespaceNode(greeting, "greeting");
        greeting->RegisterNamespaceNode(std::make_shared<GreetingGetCommand>(), "get");
        dispatcher.HandleArgvInput(argc, argv);  // ends the process
    } catch (const std::exception& error) {
        std::cerr << "Errors: \n" << error.what() << '\n';
        return 1;
    }
}
