#include "corvel/platform/Pipe.h"

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <utility>

namespace Corvel::Platform {

namespace {

constexpr int kFirstOrdinaryDescriptor = STDERR_FILENO + 1;

int MoveAboveStandard(FileDescriptor& descriptor) noexcept {
    if (descriptor.Get() >= kFirstOrdinaryDescriptor) {
        return 0;
    }
    FileDescriptor moved(fcntl(descriptor.Get(), F_DUPFD_CLOEXEC, kFirstOrdinaryDescriptor));
    if (!moved.IsOpen()) {
        return errno;
    }
    descriptor = std::move(moved);
    return 0;
}

}  // namespace

int Pipe::Open() noexcept {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return errno;
    }
    Pipe fresh{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
    for (FileDescriptor* end : {&fresh.readEnd, &fresh.writeEnd}) {
        if (const int error = MoveAboveStandard(*end); error != 0) {
            return error;
        }
    }
    *this = std::move(fresh);
    return 0;
}

}  // namespace Corvel::Platform
