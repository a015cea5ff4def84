#pragma once

#include <list>
#include <memory>
#include <stack>
#include <string>
#include <utility>
#include <vector>

#include "corvel/platform/Export.h"

namespace Corvel::CallSpec {
class InputSpec;
}

namespace Corvel::AutoCli {

/// One command line taken apart: the program's name, the options before the command path, the path,
/// and the options after it.
///
///   quorcli --formatter xml storage core list --name a --name b
///           dispatcher parameter  path        command parameters
///
/// An option is a word of one dash and one letter (-f), or of two dashes, a letter and at least one
/// more letter, digit or dash, with or without "=" and a value (--name, --name=a). Any other word is
/// a value or part of the path. The word after an option that has no "=" is its value unless it is
/// an option itself. Names are kept as written, without dashes; an empty value stands for none.
///
/// Command parameters are taken apart when they are first asked for, because only the command's
/// input specification, given by SetInputSpec() until then, tells which options need a value and
/// which values are secret: those are prompted for.
///
/// Failures: nothing is thrown for bad input. Every problem is one of GetParseErrors():
///             "Attempt to parse option failed.  Input was : " + word
///             name + " must have value"
///             "Found Extra non-parameter arguments at the end of input: " + "'" + word + "' " ...
/// Lifetime: one parser for one command line.
class CORVEL_EXPORT OptionParser {
public:
    /// An option's name and its value.
    using Parameter = std::pair<std::string, std::string>;

    /// The dispatcher's name is "quorcli".
    OptionParser();
    explicit OptionParser(const char* dispatcherName);
    explicit OptionParser(const std::string& dispatcherName);

    /// The first argument is the dispatcher's name; the command line begins with the second one.
    void ParseArgv(int argc, const char* const* argv);
    void ParseVector(std::vector<std::string> words);
    /// Splits the line into words at blanks and tabs, and parses them. Double quotes keep blanks
    /// together and are no part of a word; there is no way to write one inside a word. A line that
    /// begins with "#", blanks aside, is a comment.
    /// @return whether there was nothing to parse: an empty line or a comment.
    bool ParseString(const char* line);
    bool ParseString(const std::string& line);
    /// What the three above end in. The top of the stack is the first word.
    void ParseStack(std::stack<std::string> words);

    /// Takes words off the stack up to the first option.
    std::list<std::string> ParsePath(std::stack<std::string>& words);
    /// Takes options and their values off the stack up to the first word that is neither.
    std::vector<Parameter> ParseParameters(std::stack<std::string>& words);
    /// Takes an option apart. A word that is none becomes a parse error, and leaves name and value.
    /// @param value  set only where the word holds one.
    /// @return whether the word holds a value.
    bool ParseParameter(const std::string& word, std::string& name, std::string& value);
    /// Whether the word is an option.
    static bool IsParameter(const std::string& word);

    /// To be given before command parameters are asked for.
    void SetInputSpec(std::shared_ptr<CallSpec::InputSpec> inputSpec);
    /// Takes the words after the path apart, once.
    void ProcessCommandArguments();

    /// Always false.
    bool IsParsed() const;
    /// In the order in which the problems were met.
    const std::vector<std::string>& GetParseErrors() const;
    const std::string& GetDispatcher() const;

    const std::list<std::string>& GetCommandPath() const;
    /// The same list.
    const std::list<std::string>& GetNamespaces() const;

    /// The options before the path, in order.
    const std::vector<Parameter>& GetDispatcherParameters() const;
    bool HasDispatcherParameter(const char* name) const;
    bool HasDispatcherParameter(const std::string& name) const;
    /// All values given for the name, in order.
    std::vector<std::string> GetDispatcherParameter(const char* name) const;
    std::vector<std::string> GetDispatcherParameter(const std::string& name) const;

    /// The options after the path, in order. These three call ProcessCommandArguments().
    const std::vector<Parameter>& GetCommandParameters();
    bool HasCommandParameter(const char* name);
    bool HasCommandParameter(const std::string& name);
    std::vector<std::string> GetCommandParameter(const char* name);
    std::vector<std::string> GetCommandParameter(const std::string& name);

    /// Reads one line from standard input; where that is a terminal, without showing what is typed.
    /// The terminal's settings are put back afterwards, and also when a signal ends or stops the
    /// process meanwhile.
    /// @return the line without its line end; empty at the end of input, and where none can be read
    ///         without showing it.
    std::string GetSilentString();

    /// Everything that is known about the command line, over several lines; for people who look for
    /// a fault. Shows secret values. Calls ProcessCommandArguments() before the last part.
    std::string ToString();

private:
    std::string ValueOfLoneOption(const std::string& name);
    std::string PromptForSecret(const std::string& name);

    bool _parsed = false;
    std::vector<std::string> _parseErrors;
    std::string _dispatcher;
    std::list<std::string> _commandPath;
    std::vector<Parameter> _dispatcherParameters;
    std::vector<Parameter> _commandParameters;
    std::stack<std::string> _remainingWords;
    std::shared_ptr<CallSpec::InputSpec> _inputSpec;
};

}  // namespace Corvel::AutoCli
