#include <fcntl.h>

#include <set>

#include <gtest/gtest.h>

#include "corvel/platform/InputFile.h"
#include "tests/support/ProcessState.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Platform {
namespace {

TEST(InputFile, IsReadAsAStream) {
    const Testing::TemporaryDirectory directory;
    InputFile file(directory.Write("file", "one line\nanother"));
    ASSERT_TRUE(file.IsOpen());
    std::string line;
    EXPECT_TRUE(std::getline(file.Stream(), line));
    EXPECT_EQ(line, "one line");
    EXPECT_TRUE(std::getline(file.Stream(), line));
    EXPECT_EQ(line, "another");
    EXPECT_FALSE(std::getline(file.Stream(), line));
}

TEST(InputFile, MissingOnesAndDirectoriesAreNotOpen) {
    const std::set<int> before = Testing::OpenDescriptors();
    const Testing::TemporaryDirectory directory;
    EXPECT_FALSE(InputFile("/nonexistent").IsOpen());
    EXPECT_FALSE(InputFile("").IsOpen());
    EXPECT_FALSE(InputFile(directory.Path()).IsOpen());
    EXPECT_FALSE(InputFile(directory.Write("file", "") + '\0' + "x").IsOpen());
    EXPECT_EQ(Testing::OpenDescriptors(), before);
}

TEST(InputFile, ChildrenDoNotInheritItAndItIsClosedInTheEnd) {
    const std::set<int> before = Testing::OpenDescriptors();
    {
        const InputFile file("/dev/null");
        ASSERT_TRUE(file.IsOpen());
        for (const int descriptor : Testing::OpenDescriptors()) {
            if (before.count(descriptor) == 0) {
                EXPECT_EQ(fcntl(descriptor, F_GETFD), FD_CLOEXEC);
            }
        }
        EXPECT_EQ(Testing::OpenDescriptors().size(), before.size() + 1);
    }
    EXPECT_EQ(Testing::OpenDescriptors(), before);
}

}  // namespace
}  // namespace Corvel::Platform
