#include "corvel/autocli/plugins/LibXml2.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>

#include "corvel/autocli/plugins/XmlErrorWatch.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/platform/SharedLibrary.h"

namespace Corvel::AutoCli {
namespace {

using Platform::SharedLibrary;

#define CORVEL_LIBXML2_NOTE                                                                     \
    "[{\"feature\":\"xml\",\"description\":\"Reading of XML plug-in descriptors and of what "   \
    "extension commands print\",\"priority\":\"required\",\"soname\":[\"" CORVEL_LIBXML2_SONAME \
    "\"]}]"

/// Tells packagers of a library that no link names, in the form of the ELF dlopen metadata.
struct DlopenNote {
    std::uint32_t nameSize = sizeof(DlopenNote::name);
    std::uint32_t textSize = sizeof(DlopenNote::text);
    std::uint32_t type = 0x407c0c0a;
    char name[4] = "FDO";
    alignas(4) char text[sizeof(CORVEL_LIBXML2_NOTE)] = CORVEL_LIBXML2_NOTE;
};
[[gnu::used, gnu::section(".note.dlopen")]] alignas(4) const DlopenNote kDlopenNote;

[[noreturn]] void RefuseToLoad(const std::string& reason) {
    throw CorvelException("Unable to load libxml2: " + reason);
}

std::unique_ptr<SharedLibrary> Load() {
    std::string reason;
    auto library = SharedLibrary::Load(CORVEL_LIBXML2_SONAME, reason, SharedLibrary::Scope::Local);
    if (library == nullptr) {
        RefuseToLoad(reason);
    }
    return library;
}

}  // namespace

template <typename Symbol>
Symbol LibXml2::Find(const char* name) const {
    std::string reason;
    void* address = _library.FindSymbol(name, reason);
    if (address == nullptr) {
        RefuseToLoad(reason);
    }
    return reinterpret_cast<Symbol>(address);
}

const LibXml2& LibXml2::Get() {
    static const Platform::SharedLibrary& loaded = *Load().release();
    static const LibXml2 library(loaded);
    return library;
}

LibXml2::LibXml2(const Platform::SharedLibrary& library)
    : _library(library), _version(std::atoi(*Find<const char* const*>("xmlParserVersion"))) {
    // It sets libxml2 up, which never does that again, and tells what it misses to nobody else.
    const XmlErrorWatch errors(*this);
    xmlCheckVersion(LIBXML_VERSION);
    if (errors.SawOutOfMemory()) {
        throw std::bad_alloc();
    }
}

}  // namespace Corvel::AutoCli
