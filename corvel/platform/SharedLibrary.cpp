#include "corvel/platform/SharedLibrary.h"

#include <dlfcn.h>
#include <errno.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <elf.h>
#include <link.h>
#include <new>
#include <string_view>
#include <vector>

#include "corvel/platform/ErrorText.h"
#include "corvel/platform/RegularFile.h"

namespace Corvel::Platform {

namespace {

/// Whether the loader found no room for what a library wants to have mapped: that is its fault, as a
/// broken one can want anything.
bool IsAboutMapping(std::string_view reason) {
    return reason.find("failed to map segment") != std::string_view::npos ||
           reason.find("cannot map zero-fill pages") != std::string_view::npos;
}

/// @param error  what the loader's call left in errno, which was 0 before.
/// @throws std::bad_alloc  when the loader itself had too little memory: no library is to blame.
std::string LoaderReason(int error) {
    const char* words = dlerror();
    std::string reason = words == nullptr ? "(null)" : words;
    if (error == ENOMEM && !IsAboutMapping(reason)) {
        throw std::bad_alloc();
    }
    return reason;
}

/// Whether a file is no plain file, and no directory, of which the loader has its own opinion.
bool IsSpecialFile(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

using Segments = std::vector<ElfW(Phdr)>;

/// Collects the segments of a file that the loader would map, as far as it is a library at all: what
/// else can be wrong with it the loader finds out itself.
/// @return whether the file could be read; where the header names an offset that no file has, nothing
///         is wrong with that.
bool ReadSegments(const RegularFile& file, Segments& segments) {
    ElfW(Ehdr) header = {};
    const long headerSize = file.ReadAt(0, &header, sizeof header);
    if (headerSize != sizeof header || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
        header.e_phentsize != sizeof(ElfW(Phdr))) {
        return headerSize >= 0;
    }
    segments.resize(header.e_phnum);
    const auto wanted = static_cast<long>(segments.size() * sizeof(ElfW(Phdr)));
    const long size = file.ReadAt(
        static_cast<long>(header.e_phoff), segments.data(), static_cast<std::size_t>(wanted));
    if (size != wanted) {
        segments.clear();
    }
    return size >= 0 || errno == EINVAL;
}

/// Whether a library ends before its segments do. The loader maps it nonetheless, and the process
/// dies of SIGBUS at the first touch.
bool IsCutShort(const RegularFile& file, const Segments& segments) {
    const auto size = static_cast<ElfW(Off)>(file.Size());
    return std::any_of(segments.begin(), segments.end(), [size](const ElfW(Phdr) & segment) {
        return segment.p_type == PT_LOAD &&
               (segment.p_offset > size || segment.p_filesz > size - segment.p_offset);
    });
}

/// What of a file speaks against it. One that cannot be looked at must not get to the loader, which
/// may have more luck; its texts are the loader's.
std::string ReasonInFile(const std::string& path) {
    const RegularFile file(path);
    if (file.Error() == ENOENT || file.Error() == EISDIR) {
        return {};
    }
    if (file.Error() == EINVAL) {
        return path + ": not a regular file";
    }
    if (!file.IsOpen()) {
        return path + ": cannot open shared object file: " + ErrorText(file.Error());
    }
    Segments segments;
    if (!ReadSegments(file, segments)) {
        return path + ": cannot read file data: " + ErrorText(errno);
    }
    return IsCutShort(file, segments) ? path + ": file too short" : std::string();
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
    return ReasonInFile(path);
}

/// A place in memory that is looked for among what is loaded.
struct CodeSearch {
    std::uintptr_t address;
    bool found;
};

/// Whether the address lies in a segment of this object that may be executed; ends the search then.
int SearchCode(dl_phdr_info* object, std::size_t /*size*/, void* context) {
    auto& search = *static_cast<CodeSearch*>(context);
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        const ElfW(Phdr)& segment = object->dlpi_phdr[i];
        const std::uintptr_t begin = object->dlpi_addr + segment.p_vaddr;
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0 && search.address >= begin &&
            search.address - begin < segment.p_memsz) {
            search.found = true;
        }
    }
    return search.found ? 1 : 0;
}

bool IsCode(const void* address) {
    CodeSearch search = {reinterpret_cast<std::uintptr_t>(address), false};
    dl_iterate_phdr(&SearchCode, &search);
    return search.found;
}

/// Whether a symbol stands exactly there that says it is data. Constants may lie among the code.
bool IsNamedAsData(const void* address) {
    Dl_info info = {};
    void* entry = nullptr;
    if (dladdr1(address, &info, &entry, RTLD_DL_SYMENT) == 0 || info.dli_saddr != address) {
        return false;
    }
    const auto* symbol = static_cast<const ElfW(Sym)*>(entry);
    const auto type = ELF64_ST_TYPE(symbol->st_info);
    return type != STT_FUNC && type != STT_GNU_IFUNC && type != STT_NOTYPE;
}

}  // namespace

std::unique_ptr<SharedLibrary> SharedLibrary::Load(const std::string& path,
                                                   std::string& reason,
                                                   Scope scope) {
    reason = ReasonAgainst(path);
    if (!reason.empty()) {
        return nullptr;
    }
    // Before the loader is asked: whoever has the handle gives it back.
    std::unique_ptr<SharedLibrary> library(new SharedLibrary(path));
    errno = 0;
    void* const handle =
        dlopen(path.c_str(), RTLD_LAZY | (scope == Scope::Global ? RTLD_GLOBAL : RTLD_LOCAL));
    if (handle == nullptr) {
        reason = LoaderReason(errno);
        return nullptr;
    }
    library->_handle = handle;
    return library;
}

SharedLibrary::~SharedLibrary() {
    if (_handle != nullptr) {
        dlclose(_handle);
    }
}

void* SharedLibrary::FindSymbol(const char* name, std::string& reason) const {
    errno = 0;  // dlsym() sets it only for want of memory
    void* address = dlsym(_handle, name);
    if (address == nullptr) {
        reason = LoaderReason(errno);
    }
    return address;
}

void* SharedLibrary::FindFunction(const char* name, std::string& reason) const {
    void* address = FindSymbol(name, reason);
    if (address != nullptr && (!IsCode(address) || IsNamedAsData(address))) {
        reason = _path + ": symbol is no function: " + name;
        return nullptr;
    }
    return address;
}

}  // namespace Corvel::Platform
