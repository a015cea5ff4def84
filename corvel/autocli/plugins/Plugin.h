#pragma once

#include <memory>
#include <string>
#include <vector>

#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

class Formatter;
class Namespace;

/// A unit that brings namespaces, commands and formatters to a dispatcher.
///
/// Ownership: owns its formatters. The nodes that it registers belong to the tree.
/// Lifetime:  the dispatcher keeps a plug-in until it goes itself; Initialize() is called once, then
///            RegisterNamespaces().
class CORVEL_EXPORT Plugin {
public:
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;
    virtual ~Plugin();

    /// Prepares the plug-in. Raises CorvelException where it cannot be used.
    virtual void Initialize() = 0;
    virtual const std::string& GetName() const = 0;
    /// Registers the plug-in's namespaces and commands below the root.
    virtual void RegisterNamespaces(std::shared_ptr<Namespace> root) = 0;
    virtual bool HasFormatter(const std::string& name) = 0;
    /// @return an empty reference where the plug-in has no such formatter.
    virtual std::shared_ptr<Formatter> GetFormatter(const std::string& name) = 0;
    virtual const std::vector<std::shared_ptr<Formatter>>& GetFormatters() = 0;

protected:
    Plugin();
};

}  // namespace Corvel::AutoCli
