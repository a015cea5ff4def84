#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/Formatter.h"

namespace Corvel::AutoCli {
namespace {

/// A formatter as a plug-in writes one.
class FixedTextFormatter : public Formatter {
public:
    using Formatter::Formatter;
    FixedTextFormatter() : Formatter("fixed") {
        SetDescription("Print always the same.");
        ReserveParams(2);
        AddParam("first", "The first one.", true);
        AddParam("second", "The second one.");
    }

    bool Format(const std::shared_ptr<CallSpec::Output>& /*output*/,
                FormatParameters& /*parameters*/,
                DisplayContext& /*display*/,
                std::ostream& stream) override {
        stream << "fixed";
        return true;
    }
};

TEST(Formatter, KeepsNameDescriptionAndParametersInOrderOfDeclaration) {
    const FixedTextFormatter formatter;
    EXPECT_EQ(formatter.GetName(), "fixed");
    EXPECT_EQ(formatter.GetDescription(), "Print always the same.");
    ASSERT_EQ(formatter.GetParams().size(), 2U);
    EXPECT_EQ(formatter.GetParams().capacity(), 2U);
    EXPECT_EQ(formatter.GetParams()[0].name, "first");
    EXPECT_EQ(formatter.GetParams()[0].description, "The first one.");
    EXPECT_TRUE(formatter.GetParams()[0].flag);
    EXPECT_EQ(formatter.GetParams()[1].name, "second");
    EXPECT_EQ(formatter.GetParams()[1].description, "The second one.");
    EXPECT_FALSE(formatter.GetParams()[1].flag);
}

TEST(Formatter, StartsWithEmptyDescriptionAndNoParameters) {
    const FixedTextFormatter formatter("plain");
    EXPECT_EQ(formatter.GetName(), "plain");
    EXPECT_EQ(formatter.GetDescription(), "");
    EXPECT_TRUE(formatter.GetParams().empty());
}

TEST(Formatter, TakesItsNameInEveryForm) {
    const std::string name = "text";
    EXPECT_EQ(FixedTextFormatter(name).GetName(), "text");
    EXPECT_EQ(FixedTextFormatter(std::string("moved")).GetName(), "moved");
    const char* nothing = nullptr;
    EXPECT_EQ(FixedTextFormatter(nothing).GetName(), "");
}

/// A formatter that is only called, never registered.
class NamelessFormatter : public Formatter {
public:
    bool Format(const std::shared_ptr<CallSpec::Output>& /*output*/,
                FormatParameters& /*parameters*/,
                DisplayContext& /*display*/,
                std::ostream& /*stream*/) override {
        return false;
    }
};

TEST(Formatter, MayHaveNoName) {
    EXPECT_EQ(NamelessFormatter().GetName(), "");
}

}  // namespace
}  // namespace Corvel::AutoCli
