#include "corvel/autocli/plugins/LibXml2.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

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

template <typename Symbol>
void Find(const SharedLibrary& library, const char* name, Symbol& symbol) {
    std::string reason;
    void* address = library.FindSymbol(name, reason);
    if (address == nullptr) {
        RefuseToLoad(reason);
    }
    symbol = reinterpret_cast<Symbol>(address);
}

}  // namespace

const LibXml2& LibXml2::Get() {
    static const LibXml2 library;
    return library;
}

LibXml2::LibXml2() {
    std::string reason;
    std::unique_ptr<SharedLibrary> library =
        SharedLibrary::Load(CORVEL_LIBXML2_SONAME, reason, SharedLibrary::Scope::Local);
    if (library == nullptr) {
        RefuseToLoad(reason);
    }
#define CORVEL_LIBXML2_FIND(name) Find(*library, #name, name);
    CORVEL_LIBXML2_FUNCTIONS(CORVEL_LIBXML2_FIND)
#undef CORVEL_LIBXML2_FIND
    Find(*library, "xmlFree", _free);
    Find(*library, "__xmlStructuredError", _errorFunction);
    Find(*library, "__xmlStructuredErrorContext", _errorContext);
    const char* const* version = nullptr;
    Find(*library, "xmlParserVersion", version);
    _version = std::atoi(*version);
    xmlCheckVersion(LIBXML_VERSION);
    static_cast<void>(library.release());
}

}  // namespace Corvel::AutoCli
