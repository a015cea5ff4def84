#pragma once

#include "corvel/autocli/plugins/ShellScanner.h"

namespace Corvel::AutoCli {

/// Reads what may stand in a word: quotes and expansions. Each Step reads a little of the construct
/// that is open; each Read begins one at the present byte.
class ShellQuoting : protected ShellScanner {
protected:
    using ShellScanner::ShellScanner;

    /// In "..", and in the body of a here-document.
    void StepInDoubleQuotes();
    /// In ${..}
    void StepInParameter();
    /// In $((..))
    void StepInArithmetic();

    /// The whole of '..'
    void ReadSingleQuotes();
    /// A $ and what tells what it means.
    void ReadDollar();
    void ReadBackquote();
    /// A backslash and a newline.
    void ReadContinuation();

private:
    char BehindContinuations() const;
    void ReadBackslashInDoubleQuotes();
    void ReadVariable();
    void ReadParameterHead(char c);
    void ReadQuoteInParameter(char quote);
    void CloseArithmetic();
    void ReadArithmeticCharacter(char c);
};

bool IsShellDigit(char c);
/// Whether the byte may stand in the name of a variable.
bool IsShellNameCharacter(char c);
bool IsShellName(std::string_view text);

}  // namespace Corvel::AutoCli
