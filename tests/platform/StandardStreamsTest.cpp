#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "corvel/platform/FileDescriptor.h"
#include "corvel/platform/Pipe.h"
#include "corvel/platform/StandardStreams.h"
#include "tests/support/ProcessState.h"

namespace Corvel::Platform {
namespace {

void ClearOutput() {
    std::cout.clear();
    std::clearerr(stdout);
}

/// As long as it lives standard output is this file, opened for writing.
class OutputTo {
public:
    explicit OutputTo(const char* path) : _saved(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3)) {
        std::cout.flush();
        const FileDescriptor file(open(path, O_WRONLY | O_CLOEXEC));
        dup2(file.Get(), STDOUT_FILENO);
    }
    OutputTo(const OutputTo&) = delete;
    OutputTo& operator=(const OutputTo&) = delete;
    ~OutputTo() {
        dup2(_saved.Get(), STDOUT_FILENO);
        ClearOutput();
        FlushStandardOutput();
    }

private:
    FileDescriptor _saved;
};

std::string Captured() {
    return testing::internal::GetCapturedStderr();
}

constexpr const char* kFull = "Unable to write to standard output: No space left on device\n";

TEST(StandardStreams, OutputThatWentOutIsNoNews) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    std::cout << "text";
    EXPECT_TRUE(FlushStandardOutput());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "text");
    EXPECT_EQ(Captured(), "");
}

TEST(StandardStreams, FailureIsToldOnceUntilTheStreamIsCleared) {
    const OutputTo full("/dev/full");
    testing::internal::CaptureStderr();
    std::cout << "text";
    EXPECT_FALSE(FlushStandardOutput());
    EXPECT_EQ(Captured(), kFull);

    testing::internal::CaptureStderr();
    std::cout << "more";
    EXPECT_FALSE(FlushStandardOutput());
    EXPECT_EQ(Captured(), "");

    testing::internal::CaptureStderr();
    ClearOutput();
    EXPECT_TRUE(FlushStandardOutput());
    std::cout << "again";
    EXPECT_FALSE(FlushStandardOutput());
    EXPECT_EQ(Captured(), kFull);
}

TEST(StandardStreams, FailureWhileWritingIsToldLikeOneWhileFlushing) {
    const OutputTo full("/dev/full");
    testing::internal::CaptureStderr();
    const std::string large(1 << 20, 'x');
    std::cout.write(large.data(), static_cast<std::streamsize>(large.size()));
    EXPECT_FALSE(FlushStandardOutput());
    EXPECT_EQ(Captured(), kFull);
}

TEST(StandardStreams, FailureOfTheCLibraryIsToldThoughNothingIsLeftToFlush) {
    const OutputTo full("/dev/full");
    testing::internal::CaptureStderr();
    std::fputs("text", stdout);
    std::fflush(stdout);
    ASSERT_TRUE(std::cout.good());
    EXPECT_FALSE(FlushStandardOutput());
    EXPECT_FALSE(FlushStandardOutput());
    EXPECT_EQ(Captured(), kFull);
}

TEST(StandardStreams, FailureWithoutReasonIsAnInputOutputError) {
    const OutputTo null("/dev/null");
    testing::internal::CaptureStderr();
    std::cout.setstate(std::ios::badbit);
    errno = 0;
    EXPECT_FALSE(FlushStandardOutput());
    EXPECT_EQ(Captured(), "Unable to write to standard output: Input/output error\n");
}

TEST(StandardStreams, ErrorLinesComeBehindWhatWasWrittenBefore) {
    const OutputTo sameAsErrors("/dev/stderr");
    testing::internal::CaptureStderr();
    dup2(STDERR_FILENO, STDOUT_FILENO);
    std::cout << "output\n";
    WriteErrorLines("errors\n");
    std::cout << "more output\n" << std::flush;
    EXPECT_EQ(Captured(), "output\nerrors\nmore output\n");
}

// --- Standard input ----------------------------------------------------------------------------

/// As long as it lives standard input is a pipe.
class InputFromPipe {
public:
    InputFromPipe() : _saved(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3)) {
        EXPECT_EQ(0, _pipe.Open());
        dup2(_pipe.readEnd.Get(), STDIN_FILENO);
    }
    InputFromPipe(const InputFromPipe&) = delete;
    InputFromPipe& operator=(const InputFromPipe&) = delete;
    ~InputFromPipe() {
        dup2(_saved.Get(), STDIN_FILENO);
        std::cin.clear();
        std::clearerr(stdin);
    }

    void Write(const std::string& text) const { EXPECT_EQ(0, _pipe.writeEnd.WriteAll(text)); }
    void End() { _pipe.writeEnd.Close(); }

private:
    FileDescriptor _saved;
    Pipe _pipe;
};

TEST(StandardStreams, LinesAreReadAsGetlineDoes) {
    std::istringstream stream("one\n\nlast");
    std::string line;
    for (const char* expected : {"one", "", "last"}) {
        EXPECT_TRUE(ReadLine(stream, line));
        EXPECT_EQ(line, expected);
    }
    EXPECT_FALSE(ReadLine(stream, line));
}

/// The signals do not let interrupted calls go on by themselves.
TEST(StandardStreams, SignalsDoNotBreakStandardInputOff) {
    InputFromPipe input;
    const Testing::Interruptions interruptions;
    auto waitForSignals = [count = 0]() mutable {
        for (count += 20; Testing::Interruptions::Count() < count;) {
            std::this_thread::yield();
        }
    };
    std::thread writer([&] {
        for (const char* piece : {"o", "ne\ntw", "o\nlast"}) {
            waitForSignals();
            input.Write(piece);
        }
        waitForSignals();
        input.End();
    });
    std::string line;
    for (const char* expected : {"one", "two", "last"}) {
        EXPECT_TRUE(ReadLine(std::cin, line));
        EXPECT_EQ(line, expected);
        EXPECT_EQ(StandardInputError(), 0);
    }
    EXPECT_FALSE(ReadLine(std::cin, line));
    EXPECT_EQ(StandardInputError(), 0);
    writer.join();
}

TEST(StandardStreams, StandardInputThatCannotBeReadIsToldFromItsEnd) {
    const InputFromPipe input;
    const FileDescriptor folder(open("/", O_RDONLY | O_CLOEXEC));
    dup2(folder.Get(), STDIN_FILENO);
    std::string line;
    EXPECT_FALSE(ReadLine(std::cin, line));
    EXPECT_EQ(StandardInputError(), EISDIR);
}

}  // namespace
}  // namespace Corvel::Platform
