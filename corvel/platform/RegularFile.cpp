#include "corvel/platform/RegularFile.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
        return;
    }
    FileDescriptor descriptor(Uninterrupted(
        [&path] { return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat status = {};
    if (descriptor.IsOpen() && fstat(descriptor.Get(), &status) == 0 && S_ISREG(status.st_mode)) {
        _descriptor = std::move(descriptor);
        _size = status.st_size;
    }
}

long RegularFile::Read(void* buffer, std::size_t size) const {
    return Uninterrupted([&] { return read(_descriptor.Get(), buffer, size); });
}

bool RegularFile::ReadAt(long offset, void* buffer, std::size_t size) const {
    const auto count =
        Uninterrupted([&] { return pread(_descriptor.Get(), buffer, size, offset); });
    return count >= 0 && static_cast<std::size_t>(count) == size;
}

}  // namespace Corvel::Platform
