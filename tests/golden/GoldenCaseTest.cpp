#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/golden/GoldenCase.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {
namespace {

namespace fs = std::filesystem;

/// One case in a folder of its own, which expects status 3 and a line on both streams.
class GoldenCaseTest : public testing::Test {
protected:
    GoldenCaseTest() {
        WriteCase("cmd", "cat; echo wrong >&2; exit 3");
        WriteCase("stdin", "right\n");
        WriteCase("out", "right\n");
        WriteCase("err", "wrong\n");
        WriteCase("status", "3\n");
    }

    void WriteCase(const std::string& file, const std::string& text) {
        _cases.Write("area/one-case/" + file, text);
    }
    std::string ReadCase(const std::string& file) { return ReadFile(CaseFile(file)); }
    fs::path CaseFile(const std::string& file) { return _cases.Path() / "area/one-case" / file; }

    GoldenCase Case() { return GoldenCase(_cases.Path() / "area/one-case"); }
    testing::AssertionResult RunAndCheck() { return Case().Check(Case().Run("/nonexistent")); }

    TemporaryDirectory _cases;
};

TEST_F(GoldenCaseTest, RunAsRecordedPasses) {
    EXPECT_TRUE(RunAndCheck());
}

TEST_F(GoldenCaseTest, DifferingByteIsShown) {
    WriteCase("out", "tight\n");
    const testing::AssertionResult result = RunAndCheck();
    EXPECT_FALSE(result);
    EXPECT_STREQ(result.message(), "out\n  expected \"tight\\n\"\n  actual   \"right\\n\"\n");
}

TEST_F(GoldenCaseTest, TrailingBlankIsADifference) {
    WriteCase("err", "wrong \n");
    EXPECT_STREQ(RunAndCheck().message(),
                 "err\n  expected \"wrong \\n\"\n  actual   \"wrong\\n\"\n");
}

TEST_F(GoldenCaseTest, MissingLineEndIsADifference) {
    WriteCase("out", "right");
    EXPECT_STREQ(RunAndCheck().message(), "out\n  expected \"right\"\n  actual   \"right\\n\"\n");
}

TEST_F(GoldenCaseTest, MissingFilesCountAsEmptyAndAsStatusZero) {
    fs::remove(CaseFile("out"));
    fs::remove(CaseFile("status"));
    EXPECT_STREQ(RunAndCheck().message(),
                 "out\n  expected \"\"\n  actual   \"right\\n\"\n"
                 "status\n  expected \"\"\n  actual   \"3\\n\"\n");
    WriteCase("cmd", "echo wrong >&2");
    EXPECT_TRUE(RunAndCheck());
}

TEST_F(GoldenCaseTest, ProgramsFolderDataAndVariablesAreThere) {
    _cases.Write("data/text", "shared\n");
    WriteCase("env", "ONE=1\nTWO=2 2\n");
    WriteCase("cmd", "cat data/text; echo $ONE $TWO $PATH; ls; basename $GOLDEN_CASE");
    EXPECT_EQ(Case().Run("/programs"),
              (Result{0, "shared\n1 2 2 /programs:/usr/bin:/bin\ndata\none-case\n", ""}));
}

TEST_F(GoldenCaseTest, AcceptRecordsTheRunAndRemovesWhatSaysNothing) {
    WriteCase("cmd", "echo other");
    EXPECT_FALSE(RunAndCheck());
    Case().Accept(Case().Run("/nonexistent"));
    EXPECT_TRUE(RunAndCheck());
    EXPECT_EQ(ReadCase("out"), "other\n");
    EXPECT_FALSE(fs::exists(CaseFile("err")));
    EXPECT_FALSE(fs::exists(CaseFile("status")));
}

/// This very program, over the cases of the test.
class GoldenProgram : public GoldenCaseTest {
protected:
    int Run(const std::string& moreEnvironment) {
        Command command{{fs::read_symlink("/proc/self/exe"), "--gtest_filter=*Cases*"}};
        command.environment.push_back("CORVEL_GOLDEN_CASES=" + _cases.Path().string());
        command.environment.push_back(moreEnvironment);
        const Result result = RunProcess(command);
        _skipped = result.out.find("[  SKIPPED ] 1 test") != std::string::npos;
        return result.status;
    }

    bool _skipped = false;
};

TEST_F(GoldenProgram, AcceptModeRewritesTheCaseAndSkipsIt) {
    WriteCase("cmd", "echo other");
    EXPECT_EQ(Run("NONE="), 1);
    EXPECT_EQ(Run("CORVEL_ACCEPT_GOLDEN=0"), 1);
    EXPECT_EQ(ReadCase("out"), "right\n");

    EXPECT_EQ(Run("CORVEL_ACCEPT_GOLDEN=1"), 0);
    EXPECT_TRUE(_skipped);
    EXPECT_EQ(ReadCase("out"), "other\n");

    EXPECT_EQ(Run("NONE="), 0);
    EXPECT_FALSE(_skipped);
}

TEST(GoldenCases, AreFoundByNameInOrder) {
    const TemporaryDirectory root;
    root.Write("b/case/cmd", "");
    root.Write("a/the-case/cmd", "");
    root.Write("a/no-case/out", "");
    std::string names;
    for (const GoldenCase& found : FindGoldenCases(root.Path())) {
        names += found.TestName() + " ";
    }
    EXPECT_EQ(names, "a_the_case b_case ");
}

}  // namespace
}  // namespace Corvel::Testing
