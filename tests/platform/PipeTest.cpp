#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/platform/Pipe.h"
#include "tests/support/ProcessState.h"

namespace Corvel::Platform {

namespace {

using Testing::DescriptorLimit;
using Testing::OpenDescriptors;

TEST(Pipe, CarriesBytesFromItsWriteEndToItsReadEnd) {
    Pipe pipe;
    ASSERT_EQ(pipe.Open(), 0);
    EXPECT_EQ(pipe.writeEnd.WriteAll("text"), 0);
    pipe.writeEnd.Close();
    std::string text;
    EXPECT_EQ(pipe.readEnd.ReadToEnd(text), 0);
    EXPECT_EQ(text, "text");
}

TEST(Pipe, EndsAreCloseOnExec) {
    Pipe pipe;
    ASSERT_EQ(pipe.Open(), 0);
    EXPECT_EQ(fcntl(pipe.readEnd.Get(), F_GETFD), FD_CLOEXEC);
    EXPECT_EQ(fcntl(pipe.writeEnd.Get(), F_GETFD), FD_CLOEXEC);
}

/// As long as it lives the standard descriptors of this mask are closed.
class ClosedStandardDescriptors {
public:
    explicit ClosedStandardDescriptors(unsigned mask) {
        for (int standard = 0; standard < 3; ++standard) {
            if ((mask & (1U << standard)) != 0) {
                _saved.emplace_back(standard, fcntl(standard, F_DUPFD_CLOEXEC, 3));
                close(standard);
            }
        }
    }
    ClosedStandardDescriptors(const ClosedStandardDescriptors&) = delete;
    ClosedStandardDescriptors& operator=(const ClosedStandardDescriptors&) = delete;
    ~ClosedStandardDescriptors() {
        for (const auto& [standard, copy] : _saved) {
            dup2(copy, standard);
            close(copy);
        }
    }

private:
    std::vector<std::pair<int, int>> _saved;
};

TEST(Pipe, EndsAreNeverStandardDescriptors) {
    for (unsigned mask = 0; mask < 8; ++mask) {
        Pipe pipe;
        int error = -1;
        bool leavesTheOthersAlone = false;
        {
            const ClosedStandardDescriptors closed(mask);
            const std::set<int> before = OpenDescriptors();
            error = pipe.Open();
            std::set<int> after = OpenDescriptors();
            leavesTheOthersAlone = after.erase(pipe.readEnd.Get()) == 1 &&
                                   after.erase(pipe.writeEnd.Get()) == 1 && after == before;
        }
        EXPECT_EQ(error, 0) << mask;
        EXPECT_GT(pipe.readEnd.Get(), 2) << mask;
        EXPECT_GT(pipe.writeEnd.Get(), 2) << mask;
        EXPECT_EQ(fcntl(pipe.readEnd.Get(), F_GETFD), FD_CLOEXEC) << mask;
        EXPECT_EQ(fcntl(pipe.writeEnd.Get(), F_GETFD), FD_CLOEXEC) << mask;
        EXPECT_EQ(pipe.writeEnd.WriteAll("x"), 0) << mask;
        EXPECT_TRUE(leavesTheOthersAlone) << mask;
    }
}

TEST(Pipe, NoRoomAboveTheStandardDescriptorsIsAnError) {
    const std::set<int> before = OpenDescriptors();
    Pipe pipe;
    int error = 0;
    {
        const ClosedStandardDescriptors closed(3);
        const DescriptorLimit limit(3);
        error = pipe.Open();
    }
    EXPECT_EQ(error, EINVAL);
    EXPECT_FALSE(pipe.readEnd.IsOpen());
    EXPECT_FALSE(pipe.writeEnd.IsOpen());
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST(Pipe, NeedsRoomForItsTwoEndsOnly) {
    const int first = fcntl(0, F_DUPFD_CLOEXEC, 3);
    const int second = fcntl(0, F_DUPFD_CLOEXEC, first + 1);
    close(first);
    close(second);
    const DescriptorLimit limit(second + 1);
    Pipe pipe;
    EXPECT_EQ(pipe.Open(), 0);
    EXPECT_EQ(pipe.readEnd.Get(), first);
    EXPECT_EQ(pipe.writeEnd.Get(), second);
}

TEST(Pipe, FailureLeavesThePipeAsItWas) {
    Pipe pipe;
    ASSERT_EQ(pipe.Open(), 0);
    const int readEnd = pipe.readEnd.Get();
    {
        const DescriptorLimit limit(readEnd);
        EXPECT_EQ(pipe.Open(), EMFILE);
    }
    EXPECT_EQ(pipe.readEnd.Get(), readEnd);
    EXPECT_EQ(pipe.writeEnd.WriteAll("x"), 0);
}

}  // namespace
}  // namespace Corvel::Platform
