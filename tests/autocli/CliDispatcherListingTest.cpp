#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/CliDispatcherFixture.h"
#include "tests/autocli/Fakes.h"
#include "tests/support/ProcessRunner.h"

namespace Corvel::Testing {
namespace {

using testing::IsEmpty;

TEST_F(CliDispatcherTest, ListingDescribesTheChildrenInTheOrderOfTheirNames) {
    RegisterCommand()->SetDescription("A command.");
    const auto space = _dispatcher.GetRootNamespace()->SubNamespace("test");
    space->SubNamespace("a")->SetDescription("A namespace.");
    Register(std::make_shared<OddNode>(static_cast<AutoCli::NamespaceNodeType>(9)), "z");

    const Result result = Capture([&] {
        _dispatcher.PrintChildren(space, _output);
        return true;
    });
    EXPECT_EQ(result.out,
              "Usage:  [disp options] test <namespaces> <command>\n"
              "\n"
              "For help please run  --help\n"
              "\n"
              "Available Namespaces: \n"
              "a     A namespace.\n"
              "Available Commands: \n"
              "it    A command.\n");

    const auto root = std::dynamic_pointer_cast<MetaObj::MetaStruct>(_output->GetRootObject());
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->GetTypeName(), "QuorcliCommandPrint");
    EXPECT_EQ(root->ToString(),
              "{'Dispatcher' => '', "
              "'NamespaceNodes' => "
              "'{'Description' => 'A namespace.', 'Name' => 'a', 'Type' => 'Namespace', }, "
              "{'Description' => 'A command.', 'Name' => 'it', 'Type' => 'Command', }, "
              "{'Description' => '', 'Name' => 'z', 'Type' => 'Unknown', }', "
              "'Path' => 'test', }");
}

TEST_F(CliDispatcherTest, ErrorsArePrintedTogetherAndInOrder) {
    _output->AddErrorMessage("one");
    _output->AddErrorMessage("two\nlines");
    EXPECT_EQ(Capture([&] {
                  _dispatcher.PrintError(_output);
                  return true;
              }),
              (Result{0, "", "Errors: \none\ntwo\nlines\n"}));
}

TEST_F(CliDispatcherTest, WithoutErrorsNothingIsPrinted) {
    EXPECT_EQ(Capture([&] {
                  _dispatcher.PrintError(_output);
                  return true;
              }),
              (Result{0, "", ""}));
}

TEST_F(CliDispatcherTest, HelpFormatParametersNameTheirFormatterOnly) {
    EXPECT_EQ(_dispatcher.GetHelpFormatParams().GetFormatter(), "commandhelp");
    EXPECT_THAT(_dispatcher.GetHelpFormatParams().GetParameters(), IsEmpty());
}

}  // namespace
}  // namespace Corvel::Testing
