#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/OptionParser.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/ParameterSpec.h"

namespace Corvel::Testing {

/// A specification with one parameter of every type, and "help" behind them.
inline std::shared_ptr<CallSpec::InputSpec> NewInputSpec() {
    using CallSpec::InputSpec;
    using CallSpec::ParameterSpec;
    using CallSpec::ParameterType;
    std::shared_ptr<InputSpec> inputSpec = InputSpec::New();
    const auto add = [&inputSpec](const char* name, const char* shortName, ParameterType type) {
        std::shared_ptr<ParameterSpec> parameter = ParameterSpec::New(name, type);
        parameter->SetShortName(shortName);
        inputSpec->AddParameter(parameter);
        return parameter;
    };
    add("bool", "b", ParameterType::Bool);
    add("file", "f", ParameterType::String);
    add("flag", "x", ParameterType::Flag);
    add("int", "i", ParameterType::Int);
    add("names", "n", ParameterType::StringList);
    add("password", "p", ParameterType::String)->SetSecret(true);
    const std::shared_ptr<ParameterSpec> help = ParameterSpec::New("help", ParameterType::Bool);
    help->SetShortName("h");
    inputSpec->AddLastParameter(help);
    return inputSpec;
}

/// A parser that was given the line and the specification above.
inline AutoCli::OptionParser Parsed(const std::string& line) {
    AutoCli::OptionParser parser;
    EXPECT_FALSE(parser.ParseString(line)) << line;
    parser.SetInputSpec(NewInputSpec());
    return parser;
}

}  // namespace Corvel::Testing
