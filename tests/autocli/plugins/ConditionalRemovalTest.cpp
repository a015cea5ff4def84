#include <ctime>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ConditionalRemoval.h"

namespace Corvel::AutoCli {

namespace {

std::string Removed(const std::string& text) {
    return RemoveConditionals(TemplateText(text)).Render();
}

struct RemovalCase {
    const char* name;
    std::string text;
    std::string expected;
};

TEST(ConditionalRemoval, RemovesWhatTheTemplateDidNotGet) {
    const RemovalCase cases[] = {
        {"nothing to remove", "cmd x", "cmd x"},
        {"empty text", "", ""},
        {"one conditional", "cmd $if{force,--force} x", "cmd  x"},
        {"conditionals in a row", "$if{a,x}$if{b,y}$if{c,z}", ""},
        {"any name characters", "$if{a-1,x}|", "|"},
        {"nested conditional", "a$if{b,x$if{c,y}z}d", "ad"},
        {"nested braces", "a$if{b,${HOME}}c", "ac"},
        {"newline and NUL inside", std::string("a$if{b,\n\0}c", 11), "ac"},
        {"text of a brace", "a$if{b,}}c", "a$if{b,}}c"},
        {"empty text of a conditional stays", "$if{a,}", "$if{a,}"},
        {"empty name stays", "$if{,x}", "$if{,x}"},
        {"upper case name stays", "$if{A,x}", "$if{A,x}"},
        {"no comma stays", "$if{a}", "$if{a}"},
        {"no end stays", "$if{a,x", "$if{a,x"},
        {"other braces stay", "${HOME} {x} $val{y}", "${HOME} {x} $val{y}"},
        {"other tokens are stepped over", "$val{y}$if{a,x}", "$val{y}"},
        {"group without dollar hides what is in it", "{ $if{a,x} }", "{ $if{a,x} }"},
        {"dollar before a group takes it along", "a $HOME { $if{b,x} } c", "a  c"},
        {"dollar far before a group takes the text along", "a $b c {d} e {$if{f,g}} h", "a  h"},
        {"unpaired brace is stepped over by itself", "{ $if{a,x}", "{ "},
        {"unpaired closing brace", "} $if{a,x} }", "}  }"},
        // After the removal three characters are stepped over, here a brace among them.
        {"scan goes on behind the place of the removal", "$if{a,x}{$if{b,y}}", "{}"},
        {"head put together by a removal", "$i$if{a,x}f{b,y}-{z}|", "|"},
        {"head put together too far back", "$i$if{a,x}f{b,y}|", "$if{b,y}|"},
        {"removal at the very end", "$ab$cd$if{e,x}", "$ab$cd"},
    };
    for (const RemovalCase& each : cases) {
        EXPECT_EQ(Removed(each.text), each.expected) << each.name;
    }
}

TEST(ConditionalRemoval, ValuesAreNoTokensAndGoWithTheTextAroundThem) {
    const auto value = [](const char* text) {
        auto inserted = std::make_shared<InsertedValue>();
        inserted->Append({text, "p"});
        return inserted;
    };
    TemplateText text;
    text.Append(value("$if{a,x}"));
    text.Append("$if{b,");
    text.Append(value(""));
    text.Append("}");
    text.Append(value("{"));
    EXPECT_EQ(RemoveConditionals(text).Render(), "$if{a,x}{");
}

TEST(ConditionalRemoval, TakesLinearTimeAtAnySizeAndNesting) {
    const auto repeat = [](std::size_t count, const std::string& text) {
        std::string repeated;
        for (std::size_t i = 0; i < count; ++i) {
            repeated += text;
        }
        return repeated;
    };
    constexpr std::size_t kMany = 50000;
    const std::string nested = repeat(kMany, "$if{a,") + "x" + repeat(kMany, "}");
    const std::string unpaired = repeat(kMany, "$if{a,");
    const std::string openings = repeat(kMany, "{{{{") + "$if{a,x}";
    const std::string groups = "$if{" + repeat(kMany, "a") + repeat(kMany, "{}") + "$if{a,x}";
    // Processor time: what else the machine does must not count.
    const std::clock_t start = std::clock();
    EXPECT_EQ(Removed(nested), "");
    EXPECT_EQ(Removed(unpaired), unpaired);
    EXPECT_EQ(Removed(repeat(kMany, "$if{a,x}")), "");
    EXPECT_EQ(Removed(openings), openings.substr(0, 4 * kMany));
    EXPECT_EQ(Removed(groups), groups.substr(0, groups.size() - 8));
    EXPECT_LT(std::clock() - start, 20 * CLOCKS_PER_SEC);
}

}  // namespace
}  // namespace Corvel::AutoCli
