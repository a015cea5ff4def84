#include "corvel/platform/Directory.h"

#include <dirent.h>
#include <errno.h>

#include <memory>
#include <new>
#include <string_view>

namespace Corvel::Platform {

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { ::closedir(directory); }
};

using OpenDirectory = std::unique_ptr<DIR, CloseDirectory>;

/// The system opens it close-on-exec.
OpenDirectory Open(const std::string& path) {
    // A path is never cut: with a null character in it, it names nothing.
    if (path.find('\0') != std::string::npos) {
        errno = ENOENT;
        return nullptr;
    }
    DIR* directory = nullptr;
    do {
        directory = ::opendir(path.c_str());
    } while (directory == nullptr && errno == EINTR);
    if (directory == nullptr && errno == ENOMEM) {
        throw std::bad_alloc();
    }
    return OpenDirectory(directory);
}

}  // namespace

DirectoryReading ReadDirectory(const std::string& path, std::vector<std::string>& names) {
    const OpenDirectory directory = Open(path);
    if (directory == nullptr) {
        const bool mayBeThere = errno == EMFILE || errno == ENFILE || errno == EIO;
        return mayBeThere ? DirectoryReading::OutOfReach : DirectoryReading::NotOpened;
    }
    errno = 0;
    while (const dirent* entry = ::readdir(directory.get())) {
        const std::string_view name(entry->d_name);
        if (name != "." && name != "..") {
            names.emplace_back(name);
        }
        errno = 0;
    }
    return errno == 0 ? DirectoryReading::Complete : DirectoryReading::Broken;
}

}  // namespace Corvel::Platform
