#include "corvel/platform/RegularFile.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace Corvel::Platform {

namespace {

/// Repeats a system call for as long as signals interrupt it.
template <typename Call>
auto Uninterrupted(const Call& call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

}  // namespace

RegularFile::RegularFile(const std::string& path) {
    // A path is never cut: with a null character in it, it names nothing.
    if (path.find('\0') != std::string::npos) {
        _error = ENOENT;
        return;
    }
    FileDescriptor descriptor(Uninterrupted(
        [&path] { return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat status = {};
    if (!descriptor.IsOpen() || fstat(descriptor.Get(), &status) != 0) {
        _error = errno;
    } else if (!S_ISREG(status.st_mode)) {
        _error = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    } else {
        _descriptor = std::move(descriptor);
        _size = status.st_size;
    }
}

long RegularFile::Read(void* buffer, std::size_t size) const {
    return Uninterrupted([&] { return read(_descriptor.Get(), buffer, size); });
}

long RegularFile::ReadAt(long offset, void* buffer, std::size_t size) const {
    auto* const bytes = static_cast<char*>(buffer);
    std::size_t done = 0;
    long count = 0;
    do {
        count = Uninterrupted([&] {
            return pread(
                _descriptor.Get(), bytes + done, size - done, offset + static_cast<long>(done));
        });
        done += static_cast<std::size_t>(std::max(count, 0L));
    } while (count > 0 && done < size);
    return count < 0 ? -1 : static_cast<long>(done);
}

}  // namespace Corvel::Platform
