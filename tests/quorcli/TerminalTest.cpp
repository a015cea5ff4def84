#include <string>

#include <gtest/gtest.h>

#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TerminalJob.h"

namespace Corvel::Testing {
namespace {

/// quorcli on a terminal of its own, with a descriptor in a folder of its own.
class QuorcliOnATerminal : public testing::Test {
protected:
    /// A shell line in which "quorcli" is the program.
    std::vector<std::string> Shell(const std::string& line) const {
        return {"/bin/sh",
                "-c",
                "cd '" + _folder.Path().string() +
                    "'; quorcli() { '" CORVEL_QUORCLI "' \"$@\"; }; " + line};
    }

    void WriteDescriptor() {
        _folder.Write(
            "secret.xml",
            "<plugin><version>1.0.0</version>"
            "<namespaces><namespace path='test'><description>T.</description></namespace>"
            "</namespaces><commands><command path='test.tell'><description>Tell.</description>"
            "<input-spec><parameter name='password' type='string' required='true' secret='true'"
            " shortname='p'><description>The secret.</description></parameter></input-spec>"
            "<output-spec><string/></output-spec>"
            "<format-parameters><formatter>simple</formatter></format-parameters>"
            "<execute>printf '&lt;output&gt;&lt;string&gt;'; tr a-z b-za;"
            " printf '&lt;/string&gt;&lt;/output&gt;'</execute><stdin>$val{password}</stdin>"
            "</command></commands></plugin>");
    }

    TemporaryDirectory _folder;
};

constexpr const char* kListingOf40Columns =
    "Usage: quorcli [disp options] <namespaces> <command>\r\n"
    "\r\n"
    "For help please run quorcli --help\r\n"
    "\r\n"
    "Available Namespaces: \r\n"
    "quorcli  Commands that operate on the \r\n"
    "         quorcli system itself allowing \r\n"
    "         users to get additional \r\n"
    "         information.\r\n"
    "Available Commands: \r\n";

/// The listing is printed under the program's path; the tests compare it under its name.
std::string UnderItsName(std::string listing) {
    const std::string path = CORVEL_QUORCLI;
    for (std::size_t at = 0; (at = listing.find(path)) != std::string::npos;) {
        listing.replace(at, path.size(), "quorcli");
    }
    return listing;
}

TEST_F(QuorcliOnATerminal, ListingIsWrappedToTheWidthOfTheTerminal) {
    TerminalJob job(Shell("stty cols 40 rows 10; quorcli"));
    EXPECT_EQ(UnderItsName(job.ReadToEnd()), kListingOf40Columns);
    EXPECT_EQ(job.Wait(), "exited 1");
}

TEST_F(QuorcliOnATerminal, ScreenWidthGoesBeforeTheTerminalsWidth) {
    TerminalJob job(Shell("stty cols 60 rows 10; quorcli --screen-width 0x28"));
    EXPECT_EQ(UnderItsName(job.ReadToEnd()), kListingOf40Columns);
}

TEST_F(QuorcliOnATerminal, UnusableScreenWidthsLeaveTheTerminalsWidth) {
    for (const char* width : {"0", "20000", "-60", "wide"}) {
        TerminalJob job(
            Shell(std::string("stty cols 40 rows 10; quorcli --screen-width=") + width));
        EXPECT_EQ(UnderItsName(job.ReadToEnd()), kListingOf40Columns) << width;
    }
}

TEST_F(QuorcliOnATerminal, SecretIsPromptedForWithoutEchoAndReachesTheCommand) {
    WriteDescriptor();
    TerminalJob job(Shell("quorcli --plugin secret.xml test tell -p; read more"));
    EXPECT_EQ(job.ReadUntil("': "), "Enter value for 'password': ");
    EXPECT_FALSE(job.Echoes());
    job.Type("geheim\n");
    EXPECT_EQ(job.ReadUntil("hfifjn\r\n"), "\r\nhfifjn\r\n");
    EXPECT_TRUE(job.Echoes());
    job.Type("seen\n");
    EXPECT_EQ(job.ReadToEnd(), "seen\r\n");
    EXPECT_EQ(job.Wait(), "exited 0");
}

TEST_F(QuorcliOnATerminal, EachOccurrenceOfASecretIsPromptedFor) {
    WriteDescriptor();
    TerminalJob job(Shell("quorcli --plugin secret.xml test tell --password -p"));
    for (int i = 0; i < 2; ++i) {
        job.ReadUntil("Enter value for 'password': ");
        EXPECT_FALSE(job.Echoes());
        job.Type("x\n");
    }
    EXPECT_EQ(job.ReadToEnd(),
              "\r\nErrors: \r\nFound multiple values for password this parameter can only accept "
              "a single value.\r\n");
    EXPECT_TRUE(job.Echoes());
    EXPECT_EQ(job.Wait(), "exited 1");
}

/// Nobody would know that the program waits.
TEST_F(QuorcliOnATerminal, SecretIsNotReadWhenItsPromptCannotBeSeen) {
    WriteDescriptor();
    TerminalJob job(Shell("quorcli --plugin secret.xml test tell -p > /dev/full"));
    EXPECT_EQ(job.ReadToEnd(),
              "Unable to write to standard output: No space left on device\r\n"
              "Errors: \r\n"
              "Unable to read value for 'password': nobody can see the prompt\r\n");
    EXPECT_EQ(job.Wait(), "exited 1");
    EXPECT_TRUE(job.Echoes());
}

TEST_F(QuorcliOnATerminal, CommandLinesAndSecretsCanBeTyped) {
    WriteDescriptor();
    TerminalJob job(Shell("stty -echo; echo ready; quorcli --plugin secret.xml --input STDIN"));
    job.ReadUntil("ready\r\n");
    job.Type("test tell -p\n");
    EXPECT_EQ(job.ReadUntil("': "), "Enter value for 'password': ");
    job.Type("abc\n");
    EXPECT_EQ(job.ReadUntil("bcd\r\n"), "\r\nbcd\r\n");
    job.Type("\x04");
    EXPECT_EQ(job.ReadToEnd(), "");
    EXPECT_EQ(job.Wait(), "exited 0");
}

}  // namespace
}  // namespace Corvel::Testing
