#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "corvel/autocli/plugins/ShellLine.h"

/// What is known of the programs that read their arguments as code, or run them.
namespace Corvel::AutoCli {

/// How a program gets its code.
enum class CodeIn {
    Nothing,
    EveryWord,
    Names,         // in words that do not begin as an assignment
    Declarations,  // the same; types, which make any assignment code, are declared by an option with one
                   // of the letters, or always when there are none
    NameOption,  // in every word, if an option with one of the letters stands before the first operand
    Input,       // on standard input
    Comparisons,  // in every word, if numbers are compared
    Options,      // behind an option with one of the letters, else from standard input
    FirstWord     // the first word that is no option, unless an option brings the code
};

struct Interpreter {
    std::string_view name;
    CodeIn code = CodeIn::Nothing;
    /// The one-letter options that bring code.
    std::string_view codeOptions = {};
    /// Those behind which another word stands that is no code.
    std::string_view wordOptions = {};
    /// It reads code from standard input, too: whatever operands it has, or, where every word is code,
    /// when it has fewer than two.
    bool readsInput = false;
};

/// What runs the command in the words behind it.
struct Runner {
    std::string_view name;
    /// So many words that are neither options nor their arguments stand before that command.
    std::size_t operands = 0;
    /// It adds words to that command, or puts them into it, which it reads from standard input.
    bool addsInput = false;
    /// The one-letter options that have it run a shell when no command follows.
    std::string_view shellOptions = {};
    /// Those behind which another word stands; where they are known, so is which word is the command.
    std::optional<std::string_view> wordOptions = {};
};

/// @return what is known of the program that the word names, whatever its folder and version; null when
///         it is no interpreter. A name that comes from an expansion may be that of any shell.
const Interpreter* FindInterpreter(const ShellWord& word);
/// The same for what runs other programs.
const Runner* FindRunner(const ShellWord& word);

}  // namespace Corvel::AutoCli
