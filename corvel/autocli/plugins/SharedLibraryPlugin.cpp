#include "corvel/autocli/plugins/SharedLibraryPlugin.h"

#include <utility>

#include "corvel/autocli/Namespace.h"
#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/NullText.h"
#include "corvel/platform/LoadingScope.h"
#include "corvel/platform/SharedLibrary.h"

namespace Corvel::AutoCli {

std::shared_ptr<SharedLibraryPlugin> SharedLibraryPlugin::New(const char* path) {
    return New(std::string(MetaObj::TextOrEmpty(path)));
}

std::shared_ptr<SharedLibraryPlugin> SharedLibraryPlugin::New(const std::string& path) {
    return New(std::string(path));
}

std::shared_ptr<SharedLibraryPlugin> SharedLibraryPlugin::New(std::string&& path) {
    return std::shared_ptr<SharedLibraryPlugin>(new SharedLibraryPlugin(std::move(path)));
}

SharedLibraryPlugin::SharedLibraryPlugin(std::string&& path) : _path(std::move(path)) {}

SharedLibraryPlugin::~SharedLibraryPlugin() = default;

void SharedLibraryPlugin::Initialize() {
    if (_library != nullptr) {
        return;
    }
    const Platform::LoadingScope loading(_path);
    std::string reason;
    auto library = Platform::SharedLibrary::Load(_path, reason);
    if (library == nullptr) {
        throw CorvelException("Unable to load plugin from " + _path + ": " + reason);
    }
    void* entryPoint = library->FindFunction("AutoCli_RegisterNamespaces", reason);
    if (entryPoint == nullptr) {
        throw CorvelException("Unable to get plugin registration point from " + _path + ": " +
                              reason);
    }
    _register = reinterpret_cast<RegistrationFunction*>(entryPoint);
    _library = std::move(library);
}

const std::string& SharedLibraryPlugin::GetName() const {
    return _path;
}

void SharedLibraryPlugin::RegisterNamespaces(std::shared_ptr<Namespace> root) {
    if (_register != nullptr) {
        const Platform::LoadingScope loading(_path);
        _register(std::move(root));
    }
}

bool SharedLibraryPlugin::HasFormatter(const std::string& /*name*/) {
    return false;
}

std::shared_ptr<Formatter> SharedLibraryPlugin::GetFormatter(const std::string& /*name*/) {
    return nullptr;
}

const std::vector<std::shared_ptr<Formatter>>& SharedLibraryPlugin::GetFormatters() {
    return NoFormatters();
}

}  // namespace Corvel::AutoCli
