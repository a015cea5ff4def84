#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/OptionParser.h"
#include "tests/autocli/OptionParserSupport.h"
#include "tests/support/FullOutput.h"

namespace Corvel::AutoCli {
namespace {

using testing::ElementsAre;
using Testing::NewInputSpec;
using Testing::Parsed;
using Parameter = OptionParser::Parameter;

/// Takes the place of a standard stream's buffer, for as long as this object lives.
template <typename Stream>
class BufferScope {
public:
    BufferScope(Stream& stream, std::streambuf* buffer)
        : _stream(stream), _before(stream.rdbuf(buffer)) {}
    BufferScope(const BufferScope&) = delete;
    BufferScope& operator=(const BufferScope&) = delete;
    ~BufferScope() {
        _stream.rdbuf(_before);
        _stream.clear();
    }

private:
    Stream& _stream;
    std::streambuf* _before;
};

/// Standard streams that the test holds: what somebody enters, and what the screen shows.
struct Console {
    explicit Console(const std::string& typed)
        : input(typed), in(std::cin, input.rdbuf()), out(std::cout, screen.rdbuf()) {}

    std::istringstream input;
    std::ostringstream screen;
    BufferScope<std::istream> in;
    BufferScope<std::ostream> out;
};

TEST(OptionParser, PromptsOncePerOccurrenceOfASecretWithoutValue) {
    Console console("first\nsecond\nthird\n");
    OptionParser parser = Parsed("list --password -p --file a --password");
    EXPECT_THAT(parser.GetCommandParameters(),
                ElementsAre(Parameter("password", "first"),
                            Parameter("p", "second"),
                            Parameter("file", "a"),
                            Parameter("password", "third")));
    EXPECT_EQ(console.screen.str(),
              "Enter value for 'password': \n"
              "Enter value for 'password': \n"
              "Enter value for 'password': \n");
    EXPECT_THAT(parser.GetParseErrors(), ElementsAre());
    parser.ProcessCommandArguments();
    EXPECT_EQ(parser.GetCommandParameters().size(), 4U);
}

TEST(OptionParser, TakesAGivenSecretAsItStands) {
    Console console("not read\n");
    OptionParser parser;
    parser.ParseVector({"list", "--password", "a", "--password=b", "-p", ""});
    parser.SetInputSpec(NewInputSpec());
    EXPECT_THAT(
        parser.GetCommandParameters(),
        ElementsAre(Parameter("password", "a"), Parameter("password", "b"), Parameter("p", "")));
    EXPECT_EQ(console.screen.str(), "");
}

TEST(OptionParser, DoesNotPromptForDispatcherOptions) {
    Console console("not read\n");
    OptionParser parser = Parsed("--password");
    EXPECT_THAT(parser.GetDispatcherParameters(), ElementsAre(Parameter("password", "")));
    EXPECT_EQ(console.screen.str(), "");
}

TEST(OptionParser, SecretAtTheEndOfInputIsEmpty) {
    Console console("");
    OptionParser parser = Parsed("list --password");
    EXPECT_THAT(parser.GetCommandParameters(), ElementsAre(Parameter("password", "")));
    EXPECT_EQ(console.screen.str(), "Enter value for 'password': \n");
}

TEST(OptionParser, PromptThatCannotBeWrittenIsToldOnceAndTheSecretIsRead) {
    const Console console("first\nsecond\n");
    const Testing::FullOutput full;
    testing::internal::CaptureStderr();
    OptionParser parser = Parsed("list --password -p");
    EXPECT_THAT(parser.GetCommandParameters(),
                ElementsAre(Parameter("password", "first"), Parameter("p", "second")));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), Testing::kFullOutputMessage);
}

TEST(OptionParser, ReadsASilentLineWithoutItsEnd) {
    Console console("one \nlast");
    OptionParser parser;
    EXPECT_EQ(parser.GetSilentString(), "one ");
    EXPECT_EQ(parser.GetSilentString(), "last");
    EXPECT_EQ(parser.GetSilentString(), "");
    EXPECT_EQ(console.screen.str(), "");
}

}  // namespace
}  // namespace Corvel::AutoCli
