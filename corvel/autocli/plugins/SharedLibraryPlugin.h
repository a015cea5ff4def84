#pragma once

#include <memory>
#include <string>
#include <vector>

#include "corvel/autocli/plugins/Plugin.h"
#include "corvel/platform/Export.h"

namespace Corvel::Platform {
class SharedLibrary;
}

namespace Corvel::AutoCli {

/// A plug-in in a shared library, which brings namespaces and commands but no formatters.
///
/// The library exports one function with C linkage,
///   extern "C" void AutoCli_RegisterNamespaces(std::shared_ptr<Namespace> root);
/// which builds its nodes and hangs them in below the root.
///
/// While code of the library runs here, it cannot end the process as if all were well: its exit() gives
/// status 1 and, on standard error, "Unable to load plugin from " + path + ": it ended the process".
/// A working directory that it changed is restored.
///
/// Lifetime: the library is loaded by Initialize() and stays so exactly as long as this object lives.
///           Its commands, its other objects and the exceptions that it throws must be gone before.
class CORVEL_EXPORT SharedLibraryPlugin : public Plugin {
public:
    /// Nothing is loaded yet.
    ///
    /// @param path  the file; a path without a slash is looked for as the system's loader does.
    static std::shared_ptr<SharedLibraryPlugin> New(const char* path);
    static std::shared_ptr<SharedLibraryPlugin> New(const std::string& path);
    static std::shared_ptr<SharedLibraryPlugin> New(std::string&& path);

    ~SharedLibraryPlugin() override;

    /// Loads the library and looks its entry point up; nothing more to do once that has succeeded.
    /// Raises, with the loader's own reason,
    ///   "Unable to load plugin from " + path + ": " + reason
    ///   "Unable to get plugin registration point from " + path + ": " + reason   (none, or data)
    /// and then has no library loaded. "(null)" stands where the loader gives no reason.
    void Initialize() override;

    /// The path.
    const std::string& GetName() const override;

    /// Calls the library's entry point; does nothing unless Initialize() has succeeded. Whatever the
    /// library throws passes through.
    void RegisterNamespaces(std::shared_ptr<Namespace> root) override;

    /// False.
    bool HasFormatter(const std::string& name) override;
    /// Empty.
    std::shared_ptr<Formatter> GetFormatter(const std::string& name) override;
    /// Empty.
    const std::vector<std::shared_ptr<Formatter>>& GetFormatters() override;

    using Plugin::GetFormatter;
    using Plugin::HasFormatter;

private:
    using RegistrationFunction = void(std::shared_ptr<Namespace> root);

    explicit SharedLibraryPlugin(std::string&& path);

    std::string _path;
    std::unique_ptr<Platform::SharedLibrary> _library;
    RegistrationFunction* _register = nullptr;
};

}  // namespace Corvel::AutoCli
