// Preloaded into a program: what it and its libraries read and write moves one byte at a time, and a
// signal interrupts every other such call before it does anything. A descriptor that is closed is
// closed, but the system says that this failed. What the C library does for its own streams does not
// come by here; so standard input is a pipe that gives one byte at a time. Children of the program are
// left alone.

#include <errno.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr std::size_t kOneByte = 1;

/// Gets the number of calls that went otherwise than usual, when the program ends.
const char* report = nullptr;
long calls = 0;

/// Every other call, from the first one on.
bool IsInterrupted() {
    ++calls;
    if (calls % 2 == 1) {
        errno = EINTR;
        return true;
    }
    return false;
}

/// One packet holds one byte; whoever reads gets no more than one packet.
void LetStandardInputComeByteByByte() {
    constexpr int kMostPackets = 256;
    constexpr int kPageSize = 4096;
    int ends[2] = {-1, -1};
    bool done = pipe2(ends, O_CLOEXEC | O_DIRECT) == 0 &&
                fcntl(ends[1], F_SETPIPE_SZ, kMostPackets * kPageSize) != -1 &&
                fcntl(ends[1], F_SETFL, O_DIRECT | O_NONBLOCK) == 0;
    char byte = 0;
    while (done && syscall(SYS_read, STDIN_FILENO, &byte, kOneByte) > 0) {
        done = syscall(SYS_write, ends[1], &byte, kOneByte) == 1;
    }
    if (!done || dup2(ends[0], STDIN_FILENO) == -1) {
        std::abort();
    }
    close(ends[0]);
    close(ends[1]);
}

[[gnu::constructor]] void Begin() {
    report = std::getenv("CORVEL_TRANSFERS");
    unsetenv("LD_PRELOAD");
    unsetenv("CORVEL_TRANSFERS");
    if (isatty(STDIN_FILENO) == 0) {
        LetStandardInputComeByteByByte();
    }
}

[[gnu::destructor]] void End() {
    if (std::FILE* file = report == nullptr ? nullptr : std::fopen(report, "we")) {
        std::fprintf(file, "%ld\n", calls);
        std::fclose(file);
    }
}

}  // namespace

extern "C" {

ssize_t read(int descriptor, void* buffer, std::size_t size) {
    return IsInterrupted() ? -1 : syscall(SYS_read, descriptor, buffer, std::min(size, kOneByte));
}

ssize_t pread(int descriptor, void* buffer, std::size_t size, off_t offset) {
    return IsInterrupted()
               ? -1
               : syscall(SYS_pread64, descriptor, buffer, std::min(size, kOneByte), offset);
}

ssize_t write(int descriptor, const void* buffer, std::size_t size) {
    return IsInterrupted() ? -1 : syscall(SYS_write, descriptor, buffer, std::min(size, kOneByte));
}

ssize_t writev(int descriptor, const iovec* pieces, int count) {
    const iovec* const end = pieces + count;
    const iovec* const piece =
        std::find_if(pieces, end, [](const iovec& one) { return one.iov_len > 0; });
    return piece == end ? 0 : write(descriptor, piece->iov_base, piece->iov_len);
}

int close(int descriptor) {
    syscall(SYS_close, descriptor);
    errno = ++calls % 2 == 1 ? EINTR : EIO;
    return -1;
}

}  // extern "C"
