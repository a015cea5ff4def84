#pragma once

#include <memory>
#include <string>
#include <vector>

#include "corvel/autocli/Namespace.h"
#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

/// The unit through which namespaces, commands and formatters reach a dispatcher: a shared library,
/// a descriptor file, or what is built in.
///
/// A dispatcher calls Initialize() once, then RegisterNamespaces() with the root of its tree, and
/// asks for formatters by name.
///
/// Ownership: shared; a dispatcher keeps its plug-ins for its whole life. A plug-in owns its
///            formatters; the tree owns the nodes that it registered.
/// Failures:  CorvelException. Whether that ends the program or skips the plug-in is the caller's
///            decision.
///
/// The order of the virtual operations is part of the binary interface of plug-ins.
class CORVEL_EXPORT Plugin {
public:
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;
    virtual ~Plugin();

    /// Prepares the plug-in: everything that can fail before the tree is touched.
    virtual void Initialize() = 0;
    virtual const std::string& GetName() const = 0;
    /// Registers the namespaces and commands of the plug-in below a root.
    virtual void RegisterNamespaces(std::shared_ptr<Namespace> root) = 0;

    virtual bool HasFormatter(const std::string& name) = 0;
    /// The formatter of that name, or an empty reference.
    virtual std::shared_ptr<Formatter> GetFormatter(const std::string& name) = 0;
    /// All formatters of the plug-in.
    virtual const std::vector<std::shared_ptr<Formatter>>& GetFormatters() = 0;

    bool HasFormatter(const char* name);
    std::shared_ptr<Formatter> GetFormatter(const char* name);

protected:
    Plugin();
    /// What a plug-in without formatters answers.
    static const std::vector<std::shared_ptr<Formatter>>& NoFormatters();
};

}  // namespace Corvel::AutoCli
