#include "corvel/platform/StandardStreams.h"

#include <errno.h>

#include <iostream>
#include <system_error>

namespace Corvel::Platform {

namespace {

/// In one piece: standard error is not buffered.
void Write(const std::string& lines) {
    std::cerr.write(lines.data(), static_cast<std::streamsize>(lines.size()));
    std::cerr.flush();
}

}  // namespace

bool FlushStandardOutput() {
    static bool told = false;
    if (std::cout) {
        told = false;
        errno = 0;
        std::cout.flush();
    }
    if (std::cout) {
        return true;
    }
    // The stream has no reason of its own: it is that of the write that failed just now, or while
    // the last text was written.
    const int reason = errno != 0 ? errno : EIO;
    if (!told) {
        told = true;
        Write("Unable to write to standard output: " + std::generic_category().message(reason) +
              "\n");
    }
    return false;
}

void WriteErrorLines(const std::string& lines) {
    FlushStandardOutput();
    Write(lines);
}

}  // namespace Corvel::Platform
