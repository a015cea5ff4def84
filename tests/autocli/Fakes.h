#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "corvel/autocli/Namespace.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/autocli/plugins/Plugin.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/Output.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/MetaInt.h"
#include "tests/autocli/TestCommand.h"

namespace Corvel::Testing {

/// Writes its name and the parameters that it got, and returns what it was told to.
class FakeFormatter final : public AutoCli::Formatter {
public:
    explicit FakeFormatter(const std::string& name, bool result = true)
        : Formatter(name), _result(result) {}

    bool Format(const std::shared_ptr<CallSpec::Output>& /*output*/,
                AutoCli::FormatParameters& parameters,
                AutoCli::DisplayContext& /*display*/,
                std::ostream& stream) override {
        stream << GetName();
        for (const auto& [key, value] : parameters.GetParameters()) {
            stream << " " << key << "=" << value;
        }
        stream << "\n";
        return _result;
    }

private:
    bool _result;
};

/// Takes an optional Int parameter "level" and gives an Int: 7, unless it is given other work.
class FakeCommand final : public TestCommand {
public:
    using Work = std::function<void(const Input&, const Output&)>;

    explicit FakeCommand(Work fakeWork = ReturnSeven) {
        auto level = CallSpec::ParameterSpec::New("level", CallSpec::ParameterType::Int);
        level->SetDescription("How much.");
        level->SetRequired(false);
        inputSpec->AddParameter(level);
        outputSpec->SetRootObject(MetaObj::MetaInt::New(0));
        work = std::move(fakeWork);
    }

    static void ReturnSeven(const Input& /*input*/, const Output& output) {
        output->SetRootObject(MetaObj::MetaInt::New(7));
    }
};

/// Declares a command that nobody can execute.
class DeclaredOnly final : public AutoCli::CommandSpec {
public:
    std::shared_ptr<CallSpec::InputSpec> GetInputSpecInternal() override {
        return CallSpec::InputSpec::New();
    }
    std::shared_ptr<CallSpec::OutputSpec> GetOutputSpecInternal() override {
        return CallSpec::OutputSpec::New();
    }
};

/// A node of a kind of its own, or one that calls itself a command.
class OddNode final : public AutoCli::Namespace {
public:
    explicit OddNode(AutoCli::NamespaceNodeType type) : _type(type) {}
    AutoCli::NamespaceNodeType GetType() const override { return _type; }

private:
    AutoCli::NamespaceNodeType _type;
};

/// A plug-in with these formatters that registers what its function registers.
class FakePlugin final : public AutoCli::Plugin {
public:
    using Registration = std::function<void(const std::shared_ptr<AutoCli::Namespace>&)>;

    explicit FakePlugin(std::string name,
                        const std::vector<std::string>& formatters = {},
                        Registration registration = {})
        : _name(std::move(name)), _registration(std::move(registration)) {
        for (const std::string& formatter : formatters) {
            _formatters.push_back(std::make_shared<FakeFormatter>(formatter));
        }
    }
    ~FakePlugin() override {
        if (onDestruction) {
            onDestruction();
        }
    }

    void Initialize() override {}
    const std::string& GetName() const override { return _name; }
    void RegisterNamespaces(std::shared_ptr<AutoCli::Namespace> root) override {
        if (_registration) {
            _registration(root);
        }
    }
    bool HasFormatter(const std::string& name) override { return GetFormatter(name) != nullptr; }
    std::shared_ptr<AutoCli::Formatter> GetFormatter(const std::string& name) override {
        for (const auto& formatter : _formatters) {
            if (formatter != nullptr && formatter->GetName() == name) {
                return formatter;
            }
        }
        return nullptr;
    }
    const std::vector<std::shared_ptr<AutoCli::Formatter>>& GetFormatters() override {
        return _formatters;
    }

    void AddFormatter(std::shared_ptr<AutoCli::Formatter> formatter) {
        _formatters.push_back(std::move(formatter));
    }
    void DropFormatters() { _formatters.clear(); }

    std::function<void()> onDestruction;

private:
    std::string _name;
    Registration _registration;
    std::vector<std::shared_ptr<AutoCli::Formatter>> _formatters;
};

}  // namespace Corvel::Testing
