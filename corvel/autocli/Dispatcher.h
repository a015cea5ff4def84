#pragma once

#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "corvel/autocli/Command.h"
#include "corvel/autocli/CommandInput.h"
#include "corvel/autocli/CommandOutput.h"
#include "corvel/autocli/RootNamespace.h"
#include "corvel/autocli/formatters/DisplayContext.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/autocli/plugins/Plugin.h"
#include "corvel/callspec/Output.h"
#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

/// The registry at the centre of the system: the tree of commands, the plug-ins that fill it, and
/// the formatters that they bring. Finds and runs commands and formats what they return; the
/// command line is the business of CliDispatcher.
///
/// Ownership: owns the tree and shares the plug-ins, which own their formatters. A plug-in that was
///            once asked for its namespaces is kept until the dispatcher goes, also when its
///            registration failed: nodes, exceptions and types of its library may still be about.
///            When the dispatcher goes it empties the tree first, then lets the plug-ins go, the
///            latest first; a root that a caller still holds then has no dispatcher any more.
/// Failures:  registering and loading throw CorvelException. Looking up, running and formatting
///            report on the output of the call and return false or an empty reference; foreign
///            exceptions of plug-ins pass through.
/// Names:     null, as a C string, counts as the empty text.
/// Threads:   one.
class CORVEL_EXPORT Dispatcher {
public:
    /// A dispatcher with the built-in formatters and commands, and nothing loaded from anywhere.
    Dispatcher();
    Dispatcher(const Dispatcher&) = delete;
    Dispatcher& operator=(const Dispatcher&) = delete;
    virtual ~Dispatcher();

    const std::shared_ptr<RootNamespace>& GetRootNamespace() const;

    /// Takes in the namespaces, commands and formatters of an initialised plug-in. Raises
    ///   "Null plugin passed to dispatcher"
    ///   "Error while trying to register the plugin " + plug-in + " " + inner message +
    ///       " The functionality in " + plug-in + " will not be available until this issue is
    ///       resolved."   (the plug-in's own registration failed with a CorvelException)
    ///   "Error while trying to register the plugin " + plug-in + "  this plugin has a formatter " +
    ///       formatter + " that was already registered from the plugin " + other plug-in +
    ///       "  The functionality in " + plug-in + " will not be available until this issue is
    ///       resolved."   (then none of its formatters is registered)
    /// After a failure the plug-in is not listed, but nodes that it registered stay in the tree.
    void RegisterPlugin(const std::shared_ptr<Plugin>& plugin);

    /// Loads, initialises and registers the plug-in that a file holds: a shared library when the
    /// path ends in ".so", a descriptor when it ends in ".xml"; other files are passed over. What
    /// RequireAllowedPluginFile() raises, before anything of the file is read, and the failures of
    /// loading, initialising and registering it pass to the caller.
    void AddPlugin(const char* path);
    void AddPlugin(const std::string& path);

    /// Loads every plug-in of the directory's subdirectory "lib64", if there is one, then every
    /// plug-in of the directory itself. What cannot be loaded is told on the standard error stream
    /// and skipped.
    void AddExternalDirectory(const char* dir);
    void AddExternalDirectory(const std::string& dir);

    /// AddExternalDirectory() of "/usr/lib/orvane/quorcli" and "/usr/lib/orvane/quorcli/ext".
    void AddDefaultDirectories();

    /// Loads every plug-in of one directory, in byte-wise order of their paths. On standard error:
    ///   "Unable to open directory " + dir + " for plugin registration"   (when asked to report it)
    ///   "Unable to read directory " + dir + " for plugin registration"
    ///   "Error loading plugin " + path + " skipping.  Error was: " + inner message
    void AddExternalDirectoryInt(const char* dir, bool reportOpenFailure);
    void AddExternalDirectoryInt(const std::string& dir, bool reportOpenFailure);

    /// The command that the input's command path names. An empty reference with, on the output,
    ///   the tree's message and "Unable to find command"   (no such node)
    ///   "Path refers to a namespace, not a command."
    ///   nothing                                           (a command that cannot be executed)
    std::shared_ptr<Command> GetCommand(const std::shared_ptr<CommandInput>& input,
                                        const std::shared_ptr<CommandOutput>& output);

    /// Finds the command, validates the input against its specification, and runs it.
    /// @return whether the output holds no error.
    bool ExecuteCommand(const std::shared_ptr<CommandInput>& input,
                        const std::shared_ptr<CommandOutput>& output);

    bool HasFormatter(const char* name) const;
    bool HasFormatter(const std::string& name) const;
    /// An empty reference when no such formatter is registered.
    std::shared_ptr<Formatter> GetFormatter(const char* name) const;
    std::shared_ptr<Formatter> GetFormatter(const std::string& name) const;
    /// All registered formatters, in byte-wise order of their names.
    std::vector<std::shared_ptr<Formatter>> GetFormatters() const;

    /// Renders the output with the formatter that the parameters name; with none named there is
    /// nothing to do. An unknown one adds "Unable to find requested formatter: " + name to the
    /// output and writes nothing.
    /// @return false only for an unknown formatter.
    bool FormatOutput(const std::shared_ptr<CallSpec::Output>& output,
                      FormatParameters& parameters,
                      DisplayContext& context,
                      std::ostream& stream);

    /// How the command that the input names wants to be formatted; empty, with the messages of
    /// GetCommand(), when there is none.
    FormatParameters GetDefaultOutputFormatParameters(const std::shared_ptr<CommandInput>& input,
                                                      const std::shared_ptr<CommandOutput>& output);

    /// The names of the registered plug-ins, in the order of their registration.
    std::vector<std::string> GetPluginNames() const;

    /// Forgets which plug-ins are registered. Deliberate: formatters and tree stay as they are.
    void ResetRegistrations();

private:
    std::shared_ptr<Plugin> FindProvider(const std::string& formatter) const;

    /// Every plug-in that was ever asked to register, in order: what keeps libraries loaded.
    std::vector<std::shared_ptr<Plugin>> _keptPlugins;
    std::map<std::string, std::shared_ptr<Plugin>> _formatterProviders;
    std::vector<std::shared_ptr<Plugin>> _plugins;
    std::shared_ptr<RootNamespace> _root;
};

}  // namespace Corvel::AutoCli
