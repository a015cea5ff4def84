#include <cstdlib>
#include <exception>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include <corvel/corvel.h>

namespace {

namespace AutoCli = Corvel::AutoCli;
namespace CallSpec = Corvel::CallSpec;
namespace MetaObj = Corvel::MetaObj;

/// Its text, its type and the code of both are in this library only.
class OwnException : public std::exception {
public:
    const char* what() const noexcept override { return "An exception of the plug-in's own."; }
};

class OwnClass {};

class TestCommand final : public AutoCli::Command {
public:
    using Body = std::function<void(CallSpec::Output&)>;

    explicit TestCommand(Body body) : _body(std::move(body)) {}

    std::shared_ptr<CallSpec::InputSpec> GetInputSpecInternal() override {
        return CallSpec::InputSpec::New();
    }
    std::shared_ptr<CallSpec::OutputSpec> GetOutputSpecInternal() override {
        auto spec = CallSpec::OutputSpec::New();
        spec->SetRootObject(MetaObj::MetaString::New(""));
        return spec;
    }
    void ExecuteInternal(const std::shared_ptr<CallSpec::Input>&,
                         const std::shared_ptr<CallSpec::Output>& output) override {
        _body(*output);
    }

private:
    Body _body;
};

void AddCommand(AutoCli::Namespace& space, const char* name, TestCommand::Body body) {
    const auto command = std::make_shared<TestCommand>(std::move(body));
    command->SetDescription("A command of the test plug-in.");
    command->SetDefaultOutputFormatter("simple");
    command->AddExample("--fast 1", "Do it fast");
    space.RegisterNamespaceNode(command, name);
}

}  // namespace

/// What REGISTRATION says is thrown after everything has been registered.
extern "C" __attribute__((visibility("default"))) void AutoCli_RegisterNamespaces(
    // The entry point of plug-ins takes it by value.
    // NOLINTNEXTLINE(performance-unnecessary-value-param)
    std::shared_ptr<Corvel::AutoCli::Namespace> root) {
    const auto space = AutoCli::Namespace::New();
    root->RegisterNamespaceNode(space, "test");
    AddCommand(*space, "succeed", [](CallSpec::Output& output) {
        output.SetRootObject(MetaObj::MetaString::New("Done."));
    });
    AddCommand(*space, "throwStandard", [](CallSpec::Output&) {
        throw std::runtime_error("A standard exception.");
    });
    AddCommand(*space, "throwOwn", [](CallSpec::Output&) { throw OwnException(); });
    AddCommand(*space, "throwClass", [](CallSpec::Output&) { throw OwnClass(); });
    AddCommand(*space, "throwNumber", [](CallSpec::Output&) { throw 1; });

    const char* const variable = std::getenv("REGISTRATION");
    const std::string registration = variable != nullptr ? variable : "";
    if (registration == "own") {
        throw OwnException();
    }
    if (registration == "class") {
        throw OwnClass();
    }
    if (registration == "corvel") {
        throw Corvel::CorvelException("The plug-in refuses.");
    }
}
