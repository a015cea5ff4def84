#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellCommand.h"
#include "tests/autocli/plugins/ShellCommandFixture.h"
#include "tests/support/ProcessState.h"

namespace Corvel::AutoCli {

namespace {

using Testing::kMegabyte;
using Testing::OpenDescriptors;
using Testing::ShellCommand;

const std::string kPrintArguments = "tr '\\0' '|' < /proc/$$/cmdline | cat; :";

TEST_F(ShellCommand, WithoutMakerTheArgumentsAreTheShellDashCAndTheCommand) {
    EXPECT_EQ(OutputOf(kPrintArguments), "/bin/sh|-c|" + kPrintArguments + "|");
    EXPECT_EQ(MakeChildRpNukOption(5), "");
}

TEST_F(ShellCommand, WithMakerOfEmptyTextTheArgumentsAreTheShellDashCAndTheCommand) {
    SetChildRpNukOptionMaker([](int) { return std::string(); });
    EXPECT_EQ(OutputOf(kPrintArguments), "/bin/sh|-c|" + kPrintArguments + "|");
}

TEST_F(ShellCommand, OptionOfTheMakerStandsBeforeDashC) {
    static int askedFor = 0;
    SetChildRpNukOptionMaker([](int id) {
        askedFor = id;
        return std::string("-u");
    });
    EXPECT_EQ(OutputOf(kPrintArguments), "/bin/sh|-u|-c|" + kPrintArguments + "|");
    EXPECT_EQ(askedFor, -1);
    EXPECT_EQ(MakeChildRpNukOption(7), "-u");
    EXPECT_EQ(askedFor, 7);
}

TEST_F(ShellCommand, ListenerHearsOfEveryFinishedCommandUntilItIsCleared) {
    Listen();
    OutputOf("exit 2");
    std::string output;
    AutoCli_ShellCmdWithQuenUsername("true", "ann", output, "");
    SetCommandExecListener(nullptr);
    OutputOf("true");
    EXPECT_EQ(Heard(),
              (std::vector<std::pair<std::string, int>>{{"exit 2", 2 << 8},
                                                        {"QUEN_USERNAME='ann' true", 0}}));
}

TEST_F(ShellCommand, ListenerFindsNoDescriptorOfTheCommand) {
    static std::set<int> found;
    found.clear();
    SetCommandExecListener([](const std::string&, int) { found = OpenDescriptors(); });
    OutputOf("echo a");
    EXPECT_EQ(found, DescriptorsBefore());
}

TEST_F(ShellCommand, ListenerHearsNothingOfACommandThatFailed) {
    Listen();
    EXPECT_EQ(FailureOf("exec 0<&-", std::string(kMegabyte, 'x')),
              "Unable to write to sub-process: Broken pipe");
    EXPECT_TRUE(Heard().empty());
}

TEST_F(ShellCommand, WhatAHookThrowsPassesThrough) {
    SetChildRpNukOptionMaker([](int) -> std::string { throw std::runtime_error("no pool"); });
    EXPECT_THROW(OutputOf("true"), std::runtime_error);
    SetChildRpNukOptionMaker(nullptr);
    SetCommandExecListener([](const std::string&, int) { throw std::runtime_error("no ear"); });
    EXPECT_THROW(OutputOf("true"), std::runtime_error);
}

}  // namespace
}  // namespace Corvel::AutoCli
