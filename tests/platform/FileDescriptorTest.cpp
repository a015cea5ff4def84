#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <ctime>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/platform/FileDescriptor.h"
#include "corvel/platform/Pipe.h"
#include "tests/support/ProcessState.h"

namespace Corvel::Platform {

namespace {

using Testing::Interruptions;
using Testing::OpenDescriptors;

constexpr std::size_t kMegabyte = 1 << 20;

FileDescriptor OpenFile(const char* path) {
    return FileDescriptor(open(path, O_RDWR | O_CLOEXEC));
}

bool IsOpen(int descriptor) {
    return fcntl(descriptor, F_GETFD) != -1;
}

TEST(FileDescriptor, OwnsNothingAtFirst) {
    FileDescriptor descriptor;
    EXPECT_FALSE(descriptor.IsOpen());
    EXPECT_EQ(descriptor.Get(), -1);
    descriptor.Close();
    EXPECT_EQ(descriptor.Release(), -1);
}

TEST(FileDescriptor, NumberZeroIsADescriptor) {
    FileDescriptor standardInput(0);
    EXPECT_TRUE(standardInput.IsOpen());
    standardInput.Release();
}

TEST(FileDescriptor, IsClosedOnceByItsOwner) {
    const std::set<int> before = OpenDescriptors();
    {
        FileDescriptor closed = OpenFile("/dev/null");
        closed.Close();
        EXPECT_FALSE(closed.IsOpen());
        // Takes the freed number, which the first owner must leave alone.
        const FileDescriptor other = OpenFile("/dev/null");
        closed.Close();
        EXPECT_TRUE(IsOpen(other.Get()));
    }
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST(FileDescriptor, MovesToOneNewOwner) {
    const std::set<int> before = OpenDescriptors();
    {
        FileDescriptor first = OpenFile("/dev/null");
        const int number = first.Get();
        FileDescriptor second(std::move(first));
        EXPECT_FALSE(first.IsOpen());  // NOLINT(bugprone-use-after-move): what is tested
        EXPECT_EQ(second.Get(), number);

        FileDescriptor third = OpenFile("/dev/null");
        const int replaced = third.Get();
        third = std::move(second);
        EXPECT_EQ(third.Get(), number);
        EXPECT_FALSE(IsOpen(replaced));

        FileDescriptor& itself = third;
        third = std::move(itself);
        EXPECT_EQ(third.Get(), number);
        EXPECT_TRUE(IsOpen(number));
    }
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST(FileDescriptor, ReleasedDescriptorStaysOpen) {
    int released = -1;
    {
        FileDescriptor descriptor = OpenFile("/dev/null");
        released = descriptor.Release();
    }
    EXPECT_TRUE(IsOpen(released));
    close(released);
}

TEST(FileDescriptor, WritesAndReadsEverything) {
    Pipe pipe;
    ASSERT_EQ(pipe.Open(), 0);
    const std::string sent = std::string("a\0b\n", 4) + std::string(3 * kMegabyte, 'x');
    std::thread writer([&] {
        EXPECT_EQ(pipe.writeEnd.WriteAll(sent), 0);
        pipe.writeEnd.Close();
    });
    std::string received = "kept ";
    EXPECT_EQ(pipe.readEnd.ReadToEnd(received), 0);
    writer.join();
    EXPECT_EQ(received, "kept " + sent);
}

TEST(FileDescriptor, EmptyTextWritesNothing) {
    const FileDescriptor none;
    EXPECT_EQ(none.WriteAll(""), 0);
}

TEST(FileDescriptor, SystemsRefusalIsReturned) {
    const FileDescriptor none;
    std::string text = "kept";
    EXPECT_EQ(none.WriteAll("x"), EBADF);
    EXPECT_EQ(none.ReadToEnd(text), EBADF);
    EXPECT_EQ(OpenFile("/dev/full").WriteAll("x"), ENOSPC);
    EXPECT_EQ(text, "kept");
}

TEST(FileDescriptor, InterruptionsLoseNothing) {
    Pipe pipe;
    ASSERT_EQ(pipe.Open(), 0);
    const std::string sent(kMegabyte, 'x');
    std::string received;
    // The other thread hears no signal, so all of them hit this one, which waits for it.
    const auto pause = [] {
        sigset_t alarm;
        sigemptyset(&alarm);
        sigaddset(&alarm, SIGALRM);
        pthread_sigmask(SIG_BLOCK, &alarm, nullptr);
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    };
    std::thread reader([&] {
        pause();
        EXPECT_EQ(pipe.readEnd.ReadToEnd(received), 0);
    });
    {
        const Interruptions interruptions;
        EXPECT_EQ(pipe.writeEnd.WriteAll(sent), 0);
        EXPECT_GT(Interruptions::Count(), 0);
    }
    pipe.writeEnd.Close();
    reader.join();
    EXPECT_EQ(received, sent);

    ASSERT_EQ(pipe.Open(), 0);
    received.clear();
    std::thread writer([&] {
        pause();
        EXPECT_EQ(pipe.writeEnd.WriteAll(sent), 0);
        pipe.writeEnd.Close();
    });
    {
        const Interruptions interruptions;
        EXPECT_EQ(pipe.readEnd.ReadToEnd(received), 0);
        EXPECT_GT(Interruptions::Count(), 0);
    }
    writer.join();
    EXPECT_EQ(received, sent);
}

bool IsSigpipePending() {
    sigset_t pending;
    sigpending(&pending);
    return sigismember(&pending, SIGPIPE) == 1;
}

bool IsSigpipeBlocked() {
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    return sigismember(&blocked, SIGPIPE) == 1;
}

TEST(FileDescriptor, ReaderGoneIsAnErrorAndNoSignal) {
    Pipe pipe;
    ASSERT_EQ(pipe.Open(), 0);
    pipe.readEnd.Close();
    EXPECT_EQ(pipe.writeEnd.WriteAll("x"), EPIPE);
    EXPECT_FALSE(IsSigpipePending());
    EXPECT_FALSE(IsSigpipeBlocked());
}

TEST(FileDescriptor, ReaderGoneUnderAnIgnoredSigpipeIsTheSameError) {
    Pipe pipe;
    ASSERT_EQ(pipe.Open(), 0);
    pipe.readEnd.Close();
    signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(pipe.writeEnd.WriteAll("x"), EPIPE);
    signal(SIGPIPE, SIG_DFL);
    EXPECT_FALSE(IsSigpipePending());
}

TEST(FileDescriptor, SigpipeThatWasPendingBeforeStaysPending) {
    sigset_t sigpipe;
    sigemptyset(&sigpipe);
    sigaddset(&sigpipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &sigpipe, nullptr);
    pthread_kill(pthread_self(), SIGPIPE);

    Pipe pipe;
    EXPECT_EQ(pipe.Open(), 0);
    pipe.readEnd.Close();
    EXPECT_EQ(pipe.writeEnd.WriteAll("x"), EPIPE);
    EXPECT_TRUE(IsSigpipePending());
    EXPECT_TRUE(IsSigpipeBlocked());

    const timespec atOnce{};
    EXPECT_EQ(sigtimedwait(&sigpipe, nullptr, &atOnce), SIGPIPE);
    pthread_sigmask(SIG_UNBLOCK, &sigpipe, nullptr);
}

}  // namespace
}  // namespace Corvel::Platform
