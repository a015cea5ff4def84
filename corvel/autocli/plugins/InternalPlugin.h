#pragma once

#include <memory>
#include <string>
#include <vector>

#include "corvel/autocli/plugins/Plugin.h"
#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

/// The plug-in that every dispatcher has: the formatters of the library itself, and the command
/// `quorcli command list`.
class CORVEL_EXPORT InternalPlugin : public Plugin {
public:
    static std::shared_ptr<InternalPlugin> New();

    ~InternalPlugin() override;

    /// Creates the formatters "table", "simple", "xml", "python", "json" and the one for the help of
    /// a command. Before that there are none.
    void Initialize() override;

    /// "Internal".
    const std::string& GetName() const override;

    void RegisterNamespaces(std::shared_ptr<Namespace> root) override;

    bool HasFormatter(const std::string& name) override;
    std::shared_ptr<Formatter> GetFormatter(const std::string& name) override;
    const std::vector<std::shared_ptr<Formatter>>& GetFormatters() override;

    using Plugin::GetFormatter;
    using Plugin::HasFormatter;

private:
    InternalPlugin();

    std::vector<std::shared_ptr<Formatter>> _formatters;
};

}  // namespace Corvel::AutoCli
