#pragma once

#include <string>

#include "corvel/autocli/plugins/TemplateText.h"

namespace Corvel::CallSpec {
class Input;
}

namespace Corvel::AutoCli {

/// What an expanded template is for: a command line, in which values must not be read as code, or
/// the standard input of the child, which gets every value as it is.
enum class TemplateUse { CommandLine, StandardInput };

/// One template in the course of its expansion. ExtensionCommand describes the tokens.
///
/// Each operation changes every token of its kind and parameter. What can be decided only once
/// (whether a value stands in single quotes; separator, option text and quoting of a list) is
/// decided by the last one. Tokens are found as the expressions
///   \$val\{name\}                            \$if\{name,(.+?)\}
///   \$list\{name,'(.?)',(true|false)\}       \$multilist\{name,(.+?),(true|false)\}
/// would find them, a dot being any character, but in linear time. An inserted value is one
/// character to them, and a separator only when it is no longer than that.
class CommandTemplate final {
public:
    CommandTemplate(const std::string& text, TemplateUse use) : _text(text), _use(use) {}

    /// Replaces the tokens of one parameter that the input holds; single values first, then
    /// conditionals, then lists. Raises what Input::GetParameter raises.
    void Substitute(const std::string& parameter, const CallSpec::Input& input);
    /// Removes the conditionals of parameters that were not given.
    void RemoveConditionals();

    const TemplateText& Text() const { return _text; }

private:
    void SubstituteValue(const std::string& parameter, const CallSpec::Input& input);
    void SubstituteConditional(const std::string& parameter);
    void SubstituteList(const std::string& parameter, const CallSpec::Input& input);
    void SubstituteMultilist(const std::string& parameter, const CallSpec::Input& input);

    /// Replaces every token that find(from) finds by what write(text, token) appends to the text.
    template <class Find, class Write>
    void ReplaceAll(Find find, Write write);

    TemplateText _text;
    TemplateUse _use;
};

}  // namespace Corvel::AutoCli
