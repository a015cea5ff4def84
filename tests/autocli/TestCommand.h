#pragma once

#include <functional>
#include <memory>

#include "corvel/autocli/Command.h"
#include "corvel/callspec/Input.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/Output.h"
#include "corvel/callspec/OutputSpec.h"
#include "corvel/callspec/ParameterSpec.h"

namespace Corvel::Testing {

/// A command whose specifications and work are those that the test puts into it.
class TestCommand : public AutoCli::Command {
public:
    using Input = std::shared_ptr<CallSpec::Input>;
    using Output = std::shared_ptr<CallSpec::Output>;

    std::shared_ptr<CallSpec::InputSpec> GetInputSpecInternal() override {
        ++inputSpecRequests;
        return inputSpec;
    }
    std::shared_ptr<CallSpec::OutputSpec> GetOutputSpecInternal() override {
        ++outputSpecRequests;
        return outputSpec;
    }
    void ExecuteInternal(const Input& input, const Output& output) override {
        ++executions;
        work(input, output);
    }

    std::shared_ptr<CallSpec::InputSpec> inputSpec = CallSpec::InputSpec::New();
    std::shared_ptr<CallSpec::OutputSpec> outputSpec = CallSpec::OutputSpec::New();
    std::function<void(const Input&, const Output&)> work = [](const Input&, const Output&) {};
    int inputSpecRequests = 0;
    int outputSpecRequests = 0;
    int executions = 0;
};

}  // namespace Corvel::Testing
