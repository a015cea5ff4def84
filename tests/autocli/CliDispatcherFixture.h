#pragma once

#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/CliDispatcher.h"
#include "corvel/autocli/CommandOutput.h"
#include "corvel/autocli/NamespaceNode.h"
#include "corvel/autocli/OptionParser.h"
#include "corvel/autocli/RootNamespace.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "tests/autocli/Fakes.h"
#include "tests/support/ProcessRunner.h"

namespace Corvel::Testing {

/// A dispatcher with the formatter "line" and a namespace "test" for the test's own nodes. What it
/// writes to the standard streams is captured; the status of a result is 0 for true.
class CliDispatcherTest : public testing::Test {
protected:
    using Words = std::vector<std::string>;

    CliDispatcherTest() {
        _dispatcher.RegisterPlugin(std::make_shared<FakePlugin>("mine", Words{"line"}));
    }

    void Register(const std::shared_ptr<AutoCli::NamespaceNode>& node, const char* name) {
        _dispatcher.GetRootNamespace()->SubNamespace("test")->RegisterNamespaceNode(node, name);
    }
    std::shared_ptr<FakeCommand> RegisterCommand(
        FakeCommand::Work work = FakeCommand::ReturnSeven) {
        auto command = std::make_shared<FakeCommand>(std::move(work));
        Register(command, "it");
        return command;
    }

    template <typename Action>
    Result Capture(Action action) {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const bool success = action();
        Result result;
        result.status = success ? 0 : 1;
        result.out = testing::internal::GetCapturedStdout();
        result.err = testing::internal::GetCapturedStderr();
        return result;
    }

    Result HandleOptions(const Words& words) {
        AutoCli::OptionParser parser;
        parser.ParseVector(words);
        return Capture([&] { return _dispatcher.HandleOptions(parser, true); });
    }

    Result HandleStream(const std::string& lines) {
        std::istringstream stream(lines);
        return Capture([&] { return _dispatcher.ParseStreamInput(stream); });
    }

    /// The user's parameters after these options.
    AutoCli::FormatParameters HandleDispatcherOptions(const Words& words) {
        AutoCli::OptionParser parser;
        parser.ParseVector(words);
        AutoCli::FormatParameters parameters;
        EXPECT_TRUE(_dispatcher.HandleDispatcherOptions(parser, parameters, _output));
        return parameters;
    }

    AutoCli::CliDispatcher _dispatcher;
    std::shared_ptr<AutoCli::CommandOutput> _output = AutoCli::CommandOutput::New();
};

}  // namespace Corvel::Testing
