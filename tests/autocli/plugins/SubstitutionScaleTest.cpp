#include <cstddef>
#include <ctime>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/autocli/plugins/SubstitutionCall.h"
#include "tests/support/Repeat.h"

namespace Corvel::AutoCli {

namespace {

using Testing::Expand;
using Testing::Repeat;
using Testing::Values;

TEST(Substitution, TakesLinearTimeForTemplatesOfAMegabyte) {
    constexpr std::size_t kMegabyte = 1 << 20;
    const std::vector<std::string> units = {"$val{bb}",
                                            "'$val{bb}'",
                                            "$val{bb",
                                            "$if{bb,x}",
                                            "$if{bb,",
                                            "$if{zz,x}",
                                            "$if{zz,",
                                            "$if{zz,}",
                                            "}",
                                            "{",
                                            "$",
                                            "'",
                                            ",",
                                            "{}",
                                            "$list{cc,',',true}",
                                            "$list{cc,',",
                                            "$list{cc,'",
                                            "$multilist{cc,-p,true}",
                                            "$multilist{cc,-p,false}",
                                            "$multilist{cc,",
                                            "$multilist{cc,,",
                                            ",true}",
                                            "$if{zz,$val{bb}"};
    const Values values = {{"bb", {"value"}}, {"cc", {"a", "b"}}};
    for (const std::string& unit : units) {
        const std::string body = Repeat(kMegabyte / unit.size(), unit);
        for (const std::string& text : {"$" + body, body + ",true}$if{zz,x}"}) {
            // Processor time: what else the machine does must not count.
            const std::clock_t start = std::clock();
            Expand(text, values);
            EXPECT_LT(std::clock() - start, 10 * CLOCKS_PER_SEC) << unit;
        }
    }
}

TEST(Substitution, ConditionalsNestHoweverDeep) {
    constexpr std::size_t kDepth = 100000;
    const std::string text =
        "<" + Repeat(kDepth, "$if{zz,") + "$val{bb}" + Repeat(kDepth, "}") + ">";
    EXPECT_EQ(Expand(text, {{"bb", {"v"}}}), "<>");
    // The first token takes the first brace; what is left of the others goes as one group.
    EXPECT_EQ(Expand(Repeat(kDepth, "$if{ee,") + "x" + Repeat(kDepth, "}"), {{"ee", {""}}}), "");
}

TEST(Substitution, LargeValuesAreInsertedWhole) {
    const std::string large(2 << 20, ';');
    EXPECT_EQ(Expand("$val{bb}|$val{bb}", {{"bb", {large}}}, true), large + "|" + large);
    EXPECT_EQ(Expand("$val{bb}", {{"bb", {large}}}).size(), 2 * large.size());
}

}  // namespace
}  // namespace Corvel::AutoCli
