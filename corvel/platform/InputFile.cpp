#include "corvel/platform/InputFile.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "corvel/platform/FileDescriptor.h"

namespace Corvel::Platform {

namespace {

/// @return the descriptor, or -1.
int Open(const std::string& path) {
    // A path is never cut: with a null character in it, it names nothing.
    if (path.find('\0') != std::string::npos) {
        return -1;
    }
    int descriptor = -1;
    do {
        descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    } while (descriptor < 0 && errno == EINTR);
    FileDescriptor owner(descriptor);
    struct stat status = {};
    const bool readable =
        owner.IsOpen() && ::fstat(owner.Get(), &status) == 0 && !S_ISDIR(status.st_mode);
    return readable ? owner.Release() : -1;
}

}  // namespace

InputFile::InputFile(const std::string& path)
    : _buffer(Open(path), std::ios::in), _stream(&_buffer) {}

}  // namespace Corvel::Platform
