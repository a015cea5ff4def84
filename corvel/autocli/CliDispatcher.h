#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "corvel/autocli/Dispatcher.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

class NamespaceNode;
class OptionParser;

/// The whole command-line program but its entry point: takes command lines apart, runs the command
/// that they name, prints the result on standard output and what went wrong on standard error.
///
/// Failures: the errors of one command line are printed together, under "Errors: ". Standard output
///           that cannot be written is told once, as "Unable to write to standard output: " + the
///           system's text. A path that names nothing, a command without specifications and a
///           formatter that throws leave HandleOptions() as exceptions.
/// Lifetime: what a command line loads, and the screen width that it sets, stay for later ones. The
///           screen width is one setting of the process.
class CORVEL_EXPORT CliDispatcher : public Dispatcher {
public:
    static std::shared_ptr<CliDispatcher> New();

    CliDispatcher();
    ~CliDispatcher() override;

    /// Handles the arguments of the process and ends it: status 0 when a command ran and was
    /// printed without error (or when a stream of command lines held none), otherwise 1. An
    /// exception leaves it as HandleOptions() lets it.
    [[noreturn]] void HandleArgvInput(int argc, const char* const* argv);

    /// Handles one parsed command line. Ends the process with status 1 after printing the usage.
    ///
    /// @param allowInput  whether "--input" makes it read more command lines.
    /// @return true when a command ran and its output was printed without error; for "--input" that
    ///         of the last line read.
    bool HandleOptions(OptionParser& parser, bool allowInput);

    /// Applies the options that stand before the path; what is wrong with them goes to the output.
    /// @return false after printing the usage text.
    bool HandleDispatcherOptions(OptionParser& parser,
                                 FormatParameters& userParams,
                                 const std::shared_ptr<CallSpec::Output>& output);

    /// Adds "Unknown dispatcher parameter: " + name to the output, for each one. "input" is one.
    void ValidateDispatcherParameters(OptionParser& parser,
                                      const std::shared_ptr<CallSpec::Output>& output);

    /// Runs every line of the stream as a command line; empty lines and comments do not count.
    /// @return the result of the last one, or true when there was none.
    bool ParseStreamInput(std::istream& stream);

    /// Prints what stands below a node, and leaves the listing as the output's root object.
    void PrintChildren(const std::shared_ptr<NamespaceNode>& node,
                       const std::shared_ptr<CommandOutput>& output);

    /// Prints the output's errors, if there are any, on standard error.
    void PrintError(const std::shared_ptr<CallSpec::Output>& output);

    FormatParameters GetHelpFormatParams();

    /// Sets the size of the terminal on standard output; without one the context is left as it is.
    /// The last "--screen-width" goes before the terminal's width when it was from 1 to 9999.
    void GetDisplayContext(DisplayContext& context);

private:
    void LoadPlugins(const OptionParser& parser);
    bool HandleInput(const OptionParser& parser);
    bool HandlePath(OptionParser& parser,
                    const FormatParameters& userParams,
                    const std::shared_ptr<CommandOutput>& output);
    bool RunCommand(OptionParser& parser,
                    const std::shared_ptr<CommandInput>& input,
                    const std::shared_ptr<CommandOutput>& output);
    bool PrintOutput(const std::shared_ptr<CommandInput>& input,
                     const std::shared_ptr<CommandOutput>& output,
                     const FormatParameters& userParams);

    std::string _name;
};

}  // namespace Corvel::AutoCli
