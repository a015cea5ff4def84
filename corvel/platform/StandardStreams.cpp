#include "corvel/platform/StandardStreams.h"

#include <errno.h>

#include <atomic>
#include <cstdio>
#include <iostream>
#include <system_error>

namespace Corvel::Platform {

namespace {

/// In one piece: standard error is not buffered.
void Write(const std::string& lines) {
    std::cerr.write(lines.data(), static_cast<std::streamsize>(lines.size()));
    std::cerr.flush();
}

/// Plug-ins may also print through the C library, whose stream keeps failures to itself.
bool IsOutputGood() {
    return std::cout.good() && std::ferror(stdout) == 0;
}

}  // namespace

bool FlushStandardOutput() {
    static std::atomic<bool> told = false;
    if (IsOutputGood()) {
        told = false;
        errno = 0;
    }
    std::cout.flush();
    if (IsOutputGood()) {
        return true;
    }
    // The streams have no reason of their own: it is that of the write that failed just now, or
    // while the last text was written.
    const int reason = errno != 0 ? errno : EIO;
    if (!told.exchange(true)) {
        Write("Unable to write to standard output: " + std::generic_category().message(reason) +
              "\n");
    }
    return false;
}

void WriteErrorLines(const std::string& lines) {
    FlushStandardOutput();
    Write(lines);
}

bool ReadLine(std::istream& stream, std::string& line) {
    errno = 0;
    bool found = static_cast<bool>(std::getline(stream, line));
    while (&stream == &std::cin && StandardInputError() == EINTR) {
        std::clearerr(stdin);
        stream.clear();
        errno = 0;
        std::string rest;
        std::getline(stream, rest);
        line += rest;
        found = !stream.fail() || !line.empty();
    }
    return found;
}

int StandardInputError() {
    const bool failed = std::cin.bad() || std::ferror(stdin) != 0;
    return failed ? (errno != 0 ? errno : EIO) : 0;
}

}  // namespace Corvel::Platform
