#include "corvel/platform/SharedLibrary.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <elf.h>
#include <link.h>
#include <vector>

#include "corvel/platform/RegularFile.h"

namespace Corvel::Platform {

namespace {

std::string LoaderReason() {
    const char* reason = dlerror();
    return reason == nullptr ? "(null)" : reason;
}

/// Whether a file is no plain file, and no directory, of which the loader has its own opinion.
bool IsSpecialFile(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

/// The segments of a file that the loader would map, as far as it is a library at all: what else can
/// be wrong with it the loader finds out itself.
std::vector<ElfW(Phdr)> ReadSegments(const RegularFile& file) {
    ElfW(Ehdr) header = {};
    if (!file.ReadAt(0, &header, sizeof header) ||
        std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
        header.e_phentsize != sizeof(ElfW(Phdr))) {
        return {};
    }
    std::vector<ElfW(Phdr)> segments(header.e_phnum);
    if (!file.ReadAt(static_cast<long>(header.e_phoff),
                     segments.data(),
                     segments.size() * sizeof(ElfW(Phdr)))) {
        return {};
    }
    return segments;
}

/// Whether a library ends before its segments do. The loader maps it nonetheless, and the process
/// dies of SIGBUS at the first touch.
bool IsCutShort(const std::string& path) {
    const RegularFile file(path);
    if (!file.IsOpen()) {
        return false;
    }
    const auto size = static_cast<ElfW(Off)>(file.Size());
    const std::vector<ElfW(Phdr)> segments = ReadSegments(file);
    return std::any_of(segments.begin(), segments.end(), [size](const ElfW(Phdr) & segment) {
        return segment.p_type == PT_LOAD &&
               (segment.p_offset > size || segment.p_filesz > size - segment.p_offset);
    });
}

/// @return why the loader must not be let near this file; empty when nothing speaks against it.
std::string ReasonAgainst(const std::string& path) {
    if (path.find('\0') != std::string::npos) {
        return path.c_str() + std::string(": null character in the path");
    }
    if (path.find('/') == std::string::npos) {
        return {};
    }
    if (IsSpecialFile(path)) {
        return path + ": not a regular file";
    }
    if (IsCutShort(path)) {
        return path + ": file too short";
    }
    return {};
}

}  // namespace

std::unique_ptr<SharedLibrary> SharedLibrary::Load(const std::string& path, std::string& reason) {
    reason = ReasonAgainst(path);
    if (!reason.empty()) {
        return nullptr;
    }
    void* handle = dlopen(path.c_str(), RTLD_LAZY | RTLD_GLOBAL);
    if (handle == nullptr) {
        reason = LoaderReason();
        return nullptr;
    }
    return std::unique_ptr<SharedLibrary>(new SharedLibrary(handle));
}

SharedLibrary::~SharedLibrary() {
    dlclose(_handle);
}

void* SharedLibrary::FindSymbol(const char* name, std::string& reason) const {
    void* address = dlsym(_handle, name);
    if (address == nullptr) {
        reason = LoaderReason();
    }
    return address;
}

}  // namespace Corvel::Platform
