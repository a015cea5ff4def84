#include <string>

#include <gtest/gtest.h>

#include "tests/autocli/plugins/SubstitutionCall.h"
#include "tests/autocli/plugins/SubstitutionGrammar.h"
#include "tests/autocli/plugins/SubstitutionReference.h"

namespace Corvel::AutoCli {

namespace {

using Testing::Call;
using Testing::Expand;
using Testing::ExpandByExpressions;
using Testing::InsertedValue;
using Testing::NewCall;
using Testing::ReferenceExpansion;
using Testing::SubstitutionGrammar;
using Testing::Values;

constexpr unsigned kSeed = 20240521;
constexpr int kRounds = 4000;

std::string Describe(int round, const std::string& text, const Values& values) {
    std::string description = "seed " + std::to_string(kSeed) + ", round " + std::to_string(round) +
                              ", template " + testing::PrintToString(text) + ", values " +
                              testing::PrintToString(values);
    return description;
}

TEST(Substitution, EqualsTheExpressionsOverPlainTextForHarmlessValues) {
    SubstitutionGrammar grammar(kSeed);
    int compared = 0;
    for (int round = 0; round < kRounds; ++round) {
        const std::string text = grammar.Template();
        const Values values =
            grammar.SomeValues([&] { return grammar.Word("ABCDEFGHIJKLMNOPQRSTUVWXYZ", 1); });
        const bool forStdin = grammar.Below(2) == 0;
        const Call call = NewCall(text, values);
        const ReferenceExpansion expected =
            ExpandByExpressions(text, call, forStdin, InsertedValue::Bytes);
        if (expected.isHarmless) {
            ASSERT_EQ(Expand(text, values, forStdin), expected.text)
                << Describe(round, text, values);
            compared += expected.text.starts_with("raised: ") ? 0 : 1;
        }
    }
    EXPECT_GT(compared, kRounds / 2) << "too few templates were expanded";
}

TEST(Substitution, EqualsTheExpressionsOverOpaqueValuesForAnyValues) {
    SubstitutionGrammar grammar(kSeed + 1);
    for (int round = 0; round < kRounds; ++round) {
        const std::string text = grammar.Template();
        const Values values = grammar.SomeValues([&] {
            return grammar.Below(10) == 0 ? grammar.Template(1)
                                          : grammar.Word("\n!\"$&'()*;<>\\^`|{},ax\1", 0);
        });
        const bool forStdin = grammar.Below(2) == 0;
        const Call call = NewCall(text, values);
        const ReferenceExpansion expected =
            ExpandByExpressions(text, call, forStdin, InsertedValue::Opaque);
        ASSERT_EQ(Expand(text, values, forStdin), expected.text) << Describe(round, text, values);
    }
}

}  // namespace
}  // namespace Corvel::AutoCli
