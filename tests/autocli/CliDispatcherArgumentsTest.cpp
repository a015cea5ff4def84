#include <iostream>

#include <gtest/gtest.h>

#include "corvel/autocli/OptionParser.h"
#include "tests/autocli/CliDispatcherFixture.h"
#include "tests/support/FullOutput.h"
#include "tests/support/ThrownText.h"

namespace Corvel::Testing {
namespace {

using AutoCli::OptionParser;
using testing::ExitedWithCode;

using CliDispatcherDeathTest = CliDispatcherTest;

TEST_F(CliDispatcherDeathTest, ArgumentsEndTheProcessWithStatusZeroAfterACommandThatRan) {
    RegisterCommand();
    const char* const arguments[] = {"tool", "test", "it", nullptr};
    EXPECT_EXIT(_dispatcher.HandleArgvInput(3, arguments), ExitedWithCode(0), "^$");
}

TEST_F(CliDispatcherDeathTest, ArgumentsEndTheProcessWithStatusOneAfterAListing) {
    const char* const arguments[] = {"tool", nullptr};
    EXPECT_EXIT(_dispatcher.HandleArgvInput(1, arguments), ExitedWithCode(1), "^$");
}

TEST_F(CliDispatcherDeathTest, NoArgumentsAtAllAreAListing) {
    const char* const arguments[] = {nullptr};
    EXPECT_EXIT(_dispatcher.HandleArgvInput(0, arguments), ExitedWithCode(1), "^$");
}

TEST_F(CliDispatcherDeathTest, UsageEndsTheProcessAtOnce) {
    OptionParser parser;
    parser.ParseVector({"--help"});
    EXPECT_EXIT(_dispatcher.HandleOptions(parser, true), ExitedWithCode(1), "^$");
}

TEST_F(CliDispatcherDeathTest, ExceptionLeavesArgumentHandling) {
    const char* const arguments[] = {"tool", "nosuch", nullptr};
    EXPECT_EQ(ThrownText([&] { _dispatcher.HandleArgvInput(2, arguments); }),
              "Unable to find a command or namespace with the name 'nosuch' in namespace ");
}

TEST_F(CliDispatcherTest, LostOutputIsToldBeforeAnExceptionLeavesArgumentHandling) {
    RegisterCommand([](const auto&, const auto&) {
        std::cout << "printed by the command";
        throw 7;
    });
    const char* const arguments[] = {"tool", "test", "it", nullptr};
    const FullOutput full;
    testing::internal::CaptureStderr();
    EXPECT_THROW(_dispatcher.HandleArgvInput(3, arguments), int);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), kFullOutputMessage);
}

}  // namespace
}  // namespace Corvel::Testing
