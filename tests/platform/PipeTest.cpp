#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include <string>

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

/// Whether a pipe opened while these standard descriptors are closed is as every pipe is. Runs in a
/// process of its own.
bool OpensAboveTheStandardOnes(unsigned closedMask) {
    for (int standard = 0; standard <= 2; ++standard) {
        if ((closedMask & (1U << standard)) != 0) {
            close(standard);
        }
    }
    const std::set<int> before = OpenDescriptors();
    Pipe pipe;
    const bool isOpen = pipe.Open() == 0;
    const int readEnd = pipe.readEnd.Get();
    const int writeEnd = pipe.writeEnd.Get();
    const bool isRight = isOpen && readEnd > 2 && writeEnd > 2 &&
                         fcntl(readEnd, F_GETFD) == FD_CLOEXEC &&
                         fcntl(writeEnd, F_GETFD) == FD_CLOEXEC && pipe.writeEnd.WriteAll("x") == 0;
    pipe = Pipe();
    return isRight && OpenDescriptors() == before;
}

TEST(PipeDeathTest, EndsAreNeverStandardDescriptors) {
    for (unsigned closedMask = 0; closedMask < 8; ++closedMask) {
        EXPECT_EXIT(
            _exit(OpensAboveTheStandardOnes(closedMask) ? 0 : 1), testing::ExitedWithCode(0), "")
            << closedMask;
    }
}

TEST(PipeDeathTest, NoRoomAboveTheStandardDescriptorsIsAnError) {
    const auto openWithoutRoom = [] {
        close(0);
        close(1);
        const DescriptorLimit limit(3);
        Pipe pipe;
        return pipe.Open() == EINVAL && !pipe.readEnd.IsOpen() && fcntl(0, F_GETFD) == -1 &&
               fcntl(1, F_GETFD) == -1;
    };
    EXPECT_EXIT(_exit(openWithoutRoom() ? 0 : 1), testing::ExitedWithCode(0), "");
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
