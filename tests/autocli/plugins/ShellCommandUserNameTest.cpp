#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellCommand.h"
#include "tests/autocli/plugins/ShellCommandFixture.h"

namespace Corvel::AutoCli {

namespace {

using Testing::ShellCommand;

TEST_F(ShellCommand, QuoteInTheUserNameIsEscapedInThePrefix) {
    Listen();
    std::string output;
    AutoCli_ShellCmdWithQuenUsername("true", "o'neil", output, "");
    ASSERT_EQ(Heard().size(), 1U);
    EXPECT_EQ(Heard().front().first, "QUEN_USERNAME='o'\\''neil' true");
}

TEST_F(ShellCommand, EmptyUserNameAddsNothing) {
    Listen();
    std::string output;
    EXPECT_EQ(AutoCli_ShellCmdWithQuenUsername("cat; exit 4", "", output, "input"), 4 << 8);
    EXPECT_EQ(output, "input");
    ASSERT_EQ(Heard().size(), 1U);
    EXPECT_EQ(Heard().front().first, "cat; exit 4");
}

TEST_F(ShellCommand, ShellSeesTheUserNameAsItIs) {
    for (const std::string name :
         {"ann", "o'neil", "''", "a b", "$(id)", "`id`;", "\\", "\"", "\n", "#", "\xc3\xa9\xff"}) {
        std::string output = "kept ";
        const int status = AutoCli_ShellCmdWithQuenUsername(
            "sh -c 'printf %s \"$QUEN_USERNAME\"; cat'", name, output, " input");
        EXPECT_EQ(status, 0) << name;
        EXPECT_EQ(output, "kept " + name + " input");
    }
}

}  // namespace
}  // namespace Corvel::AutoCli
