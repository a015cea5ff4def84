#pragma once

#include <memory>
#include <string>

namespace Corvel::Platform {

/// A shared library that was loaded into the process. Its functions are bound when they are first
/// called.
///
/// Failures: reasons are the system loader's own words, "(null)" when it gives none, or words like
///           them where it has no objection and we do. Want of memory raises std::bad_alloc: it says
///           nothing about the library.
/// Lifetime: the destructor gives the library back; the system unloads it when nobody else uses it.
class SharedLibrary final {
public:
    /// Whom the symbols serve: libraries loaded later, too, or only who asks for them here.
    enum class Scope { Global, Local };

    /// Loads a library, or one more time a library that is loaded already. A file that the loader
    /// would wait for (a FIFO) or die from (one that ends before its segments do) is refused.
    ///
    /// @param path    a file; without a slash in it, it is looked for as the loader does.
    /// @param reason  receives why the library cannot be loaded.
    /// @return null on failure.
    static std::unique_ptr<SharedLibrary> Load(const std::string& path,
                                               std::string& reason,
                                               Scope scope = Scope::Global);

    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;
    ~SharedLibrary();

    /// The address of a symbol of the library or of what it depends on.
    ///
    /// @param reason  receives why there is none.
    /// @return null on failure.
    void* FindSymbol(const char* name, std::string& reason) const;

    /// FindSymbol() of something that can be called: data is refused, which would end the process
    /// when it is.
    void* FindFunction(const char* name, std::string& reason) const;

private:
    explicit SharedLibrary(const std::string& path) : _path(path) {}

    std::string _path;
    void* _handle = nullptr;
};

}  // namespace Corvel::Platform
