#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/platform/Export.h"

namespace Corvel::MetaObj {
class MetaList;
class MetaStruct;
}  // namespace Corvel::MetaObj

namespace Corvel::AutoCli {

/// The formatter "clihelp": prints what stands below a namespace, from a structure of the type
/// "QuorcliCommandPrint" with the fields "Dispatcher" (the program's name), "Path" (the list of
/// names typed so far) and "NamespaceNodes" (structures with "Name", "Description" and "Type").
///
/// Failures: Format() throws CorvelException for any other root,
///   "Error: Unexpected type for help output, formatter expected a struct with help data"
/// Missing fields read as empty, a missing list of nodes as a bad one.
class CORVEL_EXPORT CliDispatcherHelpFormatter : public Formatter {
public:
    static std::shared_ptr<CliDispatcherHelpFormatter> New();
    CliDispatcherHelpFormatter();
    ~CliDispatcherHelpFormatter() override;

    /// @return true.
    bool Format(const std::shared_ptr<CallSpec::Output>& output,
                FormatParameters& parameters,
                DisplayContext& display,
                std::ostream& stream) override;

    /// Sets `result` to the field's text, to nothing when there is none. @return whether there is
    /// such a field and it is a string.
    bool ExtractString(const std::string& fieldName,
                       const std::shared_ptr<MetaObj::MetaStruct>& structure,
                       std::string& result) const;

    /// Prints a heading, then name and description of each node whose "Type" is `typeWord` as a
    /// table without header. @return whether the table was completed; "ERROR, list is bad" stands in
    /// its place when `nodes` is null.
    bool HandleList(const std::string& typeWord,
                    const std::shared_ptr<MetaObj::MetaList>& nodes,
                    DisplayContext& display,
                    std::ostream& stream) const;
};

}  // namespace Corvel::AutoCli
