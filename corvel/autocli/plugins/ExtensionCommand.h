#pragma once

#include <memory>
#include <string>

#include "corvel/autocli/Command.h"
#include "corvel/autocli/plugins/ShellTemplate.h"
#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

class XmlElement;
class XmlTree;
struct DeclaredSpecs;

/// A command whose work is done by a shell command line, made from a template and the values of
/// the call; what the child prints is read back as an XML value document.
///
/// A template is text with four kinds of token, which name a parameter by its long name. A token
/// whose parameter was not given stays as it is, except $if, which is removed:
///   $val{name}                   the value
///   $if{name,text}               text, up to the first "}", when the parameter was given
///   $list{name,'c',true}         all values joined by c (at most one character), in double quotes
///   $list{name,'c',false}        the same without the quotes
///   $multilist{name,opt,true}    for each value: blank, opt, blank, the value in double quotes
///   $multilist{name,opt,false}   the same without the quotes
///
/// In the execute template values are escaped for the shell: a $val directly inside single quotes
/// loses its single quotes; elsewhere every bad character (isBadChar) gets a backslash; a quoted
/// $multilist value loses its double quotes. In the stdin template values are inserted as they are.
/// A value, once inserted, is opaque: no token, brace or quote in it has any further effect.
///
/// Ownership: shares its specifications; GetInputSpec() adds "help" to the very specification that
///            was set here.
class CORVEL_EXPORT ExtensionCommand : public Command {
public:
    /// @return a command with empty templates and without specifications.
    static std::shared_ptr<ExtensionCommand> New();

    ExtensionCommand();
    ~ExtensionCommand() override;

    /// The template of the shell command line.
    void SetExecuteCommand(std::string text);
    void SetExecuteCommand(const char* text);

    /// The template of the text that the child gets on its standard input.
    void SetStdin(std::string text);
    void SetStdin(const char* text);

    void SetInputSpec(std::shared_ptr<CallSpec::InputSpec> inputSpec);
    void SetOutputSpec(std::shared_ptr<CallSpec::OutputSpec> outputSpec);

    /// Raise, when none was set,
    ///   "Request for NULL InputSpec.  Extension command is incomplete and will not work"
    ///   "Request for NULL OutputSpec.  Extension command is incomplete and will not work"
    std::shared_ptr<CallSpec::InputSpec> GetInputSpecInternal() override;
    std::shared_ptr<CallSpec::OutputSpec> GetOutputSpecInternal() override;

    /// Expands the execute template (forStdin false) or the stdin template (true). A null input is
    /// one without parameters. Asking for the value of a list or flag parameter raises what
    /// Input::GetParameter raises.
    std::string SubstituteInput(const std::shared_ptr<CallSpec::Input>& input, bool forStdin);

    /// The free functions of these names.
    static std::string SanitizeInput(const std::string& text);
    static std::string SanitizeChar(const std::string& text, char unwanted);

    /// Runs the expanded command line ("LANG=en_US.UTF-8 " stands before it when LANG is not set;
    /// under the name in context "user" when the specification supports that context) and turns
    /// what it prints into the output's root object. Does nothing when the output already holds an
    /// error: an invalid call must not start a shell.
    ///
    /// Leading lines "ERROR:message" become error messages, and then nothing is parsed. Other
    /// problems become one message each:
    ///   "Got no data from process.\nCommand \"" + command line + "\"\n" +
    ///     "еxited with error code: " + "1" (ended normally) or "0"; also sent to the system log
    ///   "Unable to parse output of Extension Command: " + text of the CorvelException
    /// Failures: what AutoCli_ShellCmd and SubstituteInput raise passes through. Raises
    ///   "Unsafe value for parameter '" + name +
    ///     "': it would be read by the shell as code, not as data."
    /// and starts no shell when a value could be more than data there, for all its escaping.
    void ExecuteInternal(const std::shared_ptr<CallSpec::Input>& input,
                         const std::shared_ptr<CallSpec::Output>& output) override;

private:
    friend std::shared_ptr<ExtensionCommand> BuildCommand(
        const std::shared_ptr<const XmlTree>& tree,
        XmlElement element);

    std::string _executeCommand;
    std::string _stdin;
    std::shared_ptr<CallSpec::InputSpec> _inputSpec;
    std::shared_ptr<CallSpec::OutputSpec> _outputSpec;
    std::unique_ptr<DeclaredSpecs> _declared;  // of a descriptor; null for a command made by hand
};

}  // namespace Corvel::AutoCli
