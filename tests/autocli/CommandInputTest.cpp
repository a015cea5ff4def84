#include <list>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/CommandInput.h"

namespace Corvel::AutoCli {
namespace {

TEST(CommandInput, StartsEmpty) {
    const std::shared_ptr<CommandInput> input = CommandInput::New();
    EXPECT_EQ(input->GetDispatcher(), "");
    EXPECT_EQ(input->GetCommandPath(), std::list<std::string>());
    EXPECT_EQ(input->GetCommandPathString(), "");
    EXPECT_TRUE(input->GetParameters().empty());
}

TEST(CommandInput, KeepsTheNameOfTheProgram) {
    const std::shared_ptr<CommandInput> input = CommandInput::New();
    input->SetDispatcher("quorcli");
    EXPECT_EQ(input->GetDispatcher(), "quorcli");
    input->SetDispatcher(std::string("other"));
    EXPECT_EQ(input->GetDispatcher(), "other");
    input->SetDispatcher(nullptr);
    EXPECT_EQ(input->GetDispatcher(), "");
}

TEST(CommandInput, JoinsItsPathWithSingleBlanks) {
    const std::shared_ptr<CommandInput> input = CommandInput::New();
    std::list<std::string> path = {"storage", "core", "list"};
    input->SetCommandPath(path);
    path.clear();
    EXPECT_EQ(input->GetCommandPath(), (std::list<std::string>{"storage", "core", "list"}));
    EXPECT_EQ(input->GetCommandPathString(), "storage core list");
    input->SetCommandPath({"list"});
    EXPECT_EQ(input->GetCommandPathString(), "list");
}

TEST(CommandInput, IsAnInputForWhoeverHoldsIt) {
    const std::shared_ptr<CallSpec::Input> input = CommandInput::New();
    input->AddParameter("name", "value");
    EXPECT_TRUE(input->HasParameter("name"));
}

}  // namespace
}  // namespace Corvel::AutoCli
