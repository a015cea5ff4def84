#pragma once

#include <iosfwd>
#include <memory>

#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

/// The formatter "commandhelp": prints usage, description, parameters and examples of one command,
/// from a structure of the type "QuorCliCommandHelp" with the fields "Dispatcher", "Path",
/// "Description", "Param List" (structures with "Name", "Short Name", "Description", "Required" and
/// "Secret") and "Example List" (structures with "Description" and "Syntax").
///
/// Failures: Format() throws CorvelException for any other root,
///   "Error: Unexpected type for output, formatter expected a struct with help information"
/// Missing fields read as empty, as false, and as an empty list.
class CORVEL_EXPORT CommandHelpFormatter : public Formatter {
public:
    static std::shared_ptr<CommandHelpFormatter> New();
    CommandHelpFormatter();
    ~CommandHelpFormatter() override;

    /// @return true.
    bool Format(const std::shared_ptr<CallSpec::Output>& output,
                FormatParameters& parameters,
                DisplayContext& display,
                std::ostream& stream) override;
};

}  // namespace Corvel::AutoCli
