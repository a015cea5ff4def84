#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/CommandOutput.h"

namespace Corvel::AutoCli {
namespace {

TEST(CommandOutput, StartsAsAnEmptyOutput) {
    const std::shared_ptr<CommandOutput> output = CommandOutput::New();
    EXPECT_EQ(output->GetFormattedString(), "");
    EXPECT_FALSE(output->HasError());
    EXPECT_EQ(output->GetOutputType(), CallSpec::Output::Normal);
    EXPECT_EQ(output->GetRootObject(), nullptr);
}

TEST(CommandOutput, KeepsTheRendering) {
    const std::shared_ptr<CommandOutput> output = CommandOutput::New();
    output->SetFormattedString("literal");
    EXPECT_EQ(output->GetFormattedString(), "literal");
    output->SetFormattedString(std::string("text\0more", 9));
    EXPECT_EQ(output->GetFormattedString(), std::string("text\0more", 9));
    output->SetFormattedString(nullptr);
    EXPECT_EQ(output->GetFormattedString(), "");
}

}  // namespace
}  // namespace Corvel::AutoCli
