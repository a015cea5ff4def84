#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "tests/golden/GoldenCase.h"

namespace Corvel::Testing {
namespace {

/// The cases of this folder, or of the one that a test of this program sets.
std::filesystem::path CasesFolder() {
    const char* folder = std::getenv("CORVEL_GOLDEN_CASES");
    return folder != nullptr ? folder : CORVEL_GOLDEN_CASES;
}

bool IsAcceptMode() {
    const char* accept = std::getenv("CORVEL_ACCEPT_GOLDEN");
    return accept != nullptr && std::string(accept) == "1";
}

class Golden : public testing::TestWithParam<GoldenCase> {};

TEST_P(Golden, Case) {
    const Result actual = GetParam().Run(CORVEL_PROGRAMS);
    if (IsAcceptMode()) {
        GetParam().Accept(actual);
        GTEST_SKIP() << "accepted";
    }
    EXPECT_TRUE(GetParam().Check(actual));
}

INSTANTIATE_TEST_SUITE_P(Cases,
                         Golden,
                         testing::ValuesIn(FindGoldenCases(CasesFolder())),
                         [](const testing::TestParamInfo<GoldenCase>& golden) {
                             return golden.param.TestName();
                         });

}  // namespace
}  // namespace Corvel::Testing
