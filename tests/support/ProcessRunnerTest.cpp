#include <gtest/gtest.h>

#include "tests/support/ProcessRunner.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {

namespace {

TEST(ProcessRunner, StreamsAndStatusAreTheProgramsOwn) {
    EXPECT_EQ(RunShell("cat; echo wrong >&2; exit 3", "a\nb"), (Result{3, "a\nb", "wrong\n"}));
}

TEST(ProcessRunner, SignalCountsAsShellsCountIt) {
    EXPECT_EQ(RunShell("kill -TERM $$"), (Result{128 + 15, "", ""}));
}

TEST(ProcessRunner, ProgramThatCannotBeStartedGives127) {
    EXPECT_EQ(RunProcess({{"/nonexistent/program"}}), (Result{127, "", ""}));
}

TEST(ProcessRunner, InputAndOutputLargerThanAPipeDoNotBlock) {
    const std::string text(1 << 20, 'x');
    EXPECT_EQ(RunShell("cat", text).out.size(), text.size());
}

TEST(ProcessRunner, EnvironmentAndFolderAreExactlyTheGivenOnes) {
    const TemporaryDirectory directory;
    EXPECT_EQ(RunProcess({{"/usr/bin/env"}, "", {"B=2", "A=1"}}), (Result{0, "B=2\nA=1\n", ""}));
    EXPECT_EQ(RunProcess({{"/bin/pwd"}, "", {}, directory.Path()}),
              (Result{0, directory.Path().string() + "\n", ""}));
}

TEST(TemporaryDirectory, HoldsWhatIsWrittenAndGoesWithIt) {
    std::filesystem::path path;
    {
        const TemporaryDirectory directory;
        path = directory.Path();
        EXPECT_EQ(ReadFile(directory.Write("a/b", "text")), "text");
        EXPECT_EQ(directory.File("a/b"), (path / "a" / "b").string());
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace Corvel::Testing
