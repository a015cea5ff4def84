#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/guard/Corpus.h"
#include "tests/guard/Range.h"

/// What is built into the shells, and reads a quoted word as arithmetic, the name of a variable or code.
namespace Corvel::Testing {

namespace {

/// Arithmetic, which may run commands where it names an element of an array.
const std::string kArithmetic = "a[$(id)]";

/// The commands that are built into the five shells. Not among them are those that stop the shell
/// (suspend) or are there to write files (history, mknod).
const std::vector<std::string>& Builtins() {
    static const std::vector<std::string> builtins = {
        ".",         "alias",    "autoload", "bg",     "bind",    "break",     "builtin",
        "caller",    "cat",      "cd",       "chdir",  "command", "compgen",   "complete",
        "compopt",   "continue", "declare",  "dirs",   "disown",  "echo",      "enable",
        "eval",      "exec",     "exit",     "export", "false",   "fc",        "fg",
        "functions", "getopts",  "global",   "hash",   "help",    "integer",   "jobs",
        "kill",      "let",      "local",    "logout", "mapfile", "nameref",   "popd",
        "print",     "printf",   "pushd",    "pwd",    "read",    "readarray", "readonly",
        "realpath",  "rename",   "return",   "set",    "shift",   "shopt",     "sleep",
        "source",    "test",     "times",    "trap",   "true",    "type",      "typeset",
        "ulimit",    "umask",    "unalias",  "unset",  "wait",    "whence",
    };
    return builtins;
}

/// The variables that the shells have, or look at.
const std::vector<std::string>& Variables() {
    static const std::vector<std::string> variables = {
        "BASH",
        "BASHOPTS",
        "BASHPID",
        "BASH_ALIASES",
        "BASH_ARGC",
        "BASH_ARGV",
        "BASH_ARGV0",
        "BASH_CMDS",
        "BASH_COMMAND",
        "BASH_COMPAT",
        "BASH_ENV",
        "BASH_EXECUTION_STRING",
        "BASH_LINENO",
        "BASH_LOADABLES_PATH",
        "BASH_SOURCE",
        "BASH_SUBSHELL",
        "BASH_VERSINFO",
        "BASH_VERSION",
        "BASH_XTRACEFD",
        "CDPATH",
        "CHILD_MAX",
        "COLUMNS",
        "COMPREPLY",
        "COMP_CWORD",
        "COMP_LINE",
        "COMP_WORDBREAKS",
        "DIRSTACK",
        "EDITOR",
        "ENV",
        "EPOCHREALTIME",
        "EPOCHSECONDS",
        "EUID",
        "EXECIGNORE",
        "FCEDIT",
        "FIGNORE",
        "FPATH",
        "FUNCNAME",
        "FUNCNEST",
        "FUNCTION",
        "GLOBIGNORE",
        "GROUPS",
        "HISTCMD",
        "HISTCONTROL",
        "HISTFILE",
        "HISTFILESIZE",
        "HISTIGNORE",
        "HISTSIZE",
        "HISTTIMEFORMAT",
        "HOME",
        "HOSTFILE",
        "HOSTNAME",
        "HOSTTYPE",
        "IFS",
        "IGNOREEOF",
        "INPUTRC",
        "INSIDE_EMACS",
        "KSHEGID",
        "KSHGID",
        "KSHUID",
        "KSH_VERSION",
        "LANG",
        "LC_ALL",
        "LINENO",
        "LINES",
        "MACHTYPE",
        "MAIL",
        "MAILCHECK",
        "MAILPATH",
        "MAPFILE",
        "OLDPWD",
        "OPTARG",
        "OPTERR",
        "OPTIND",
        "OSTYPE",
        "PATH",
        "PATHSEP",
        "PGRP",
        "PIPESTATUS",
        "POSIXLY_CORRECT",
        "PPID",
        "PROMPT_COMMAND",
        "PS0",
        "PS1",
        "PS2",
        "PS3",
        "PS4",
        "PWD",
        "RANDOM",
        "READLINE_LINE",
        "REPLY",
        "SECONDS",
        "SHELL",
        "SHELLOPTS",
        "SHLVL",
        "SRANDOM",
        "TERM",
        "TIMEFORMAT",
        "TMOUT",
        "TMPDIR",
        "UID",
        "USER_ID",
        "VISUAL",
        "_",
    };
    return variables;
}

/// None, and each letter.
std::vector<std::string> Options() {
    std::vector<std::string> options = {""};
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        options.push_back(std::string("-") + letter);
        options.push_back(std::string("-") + static_cast<char>(letter - 'a' + 'A'));
    }
    return options;
}

/// The tests of builtins are divided into so many, which run at once.
constexpr std::size_t kSlices = 4;

class Builtin : public testing::TestWithParam<std::size_t> {};

TEST_P(Builtin, ReadsNoQuotedValueAsCode) {
    Range range({"id"});
    for (std::size_t i = GetParam(); i < Builtins().size(); i += kSlices) {
        const std::string& builtin = Builtins()[i];
        for (const std::string& option : Options()) {
            const std::string command = "( " + builtin + " " + option;
            range.Attempt(command + "'$val{aa}' x )", {{kFirst, {kArithmetic}}});
            range.Attempt(command + " x '$val{aa}' )", {{kFirst, {kArithmetic}}});
            for (const std::string& value :
                 {kArithmetic, "x=" + kArithmetic, std::string("x=($(id))")}) {
                range.Attempt(command + " '$val{aa}' )", {{kFirst, {value}}});
            }
        }
        range.Run(builtin);
    }
}

INSTANTIATE_TEST_SUITE_P(Slices, Builtin, testing::Range<std::size_t>(0, kSlices));

/// Every way in which a template gives a variable a value.
std::vector<std::string> Assignments(const std::string& variable) {
    const std::string assignment = variable + "='$val{aa}'";
    return {
        "( " + assignment + "; set -x; : \"$" + variable + "\" )",
        "( " + variable + "+='$val{aa}' )",
        assignment + " sh -c :",
        assignment + " command :",
        "( export " + assignment + "; sh -c : )",
        "( readonly " + assignment + " )",
        "( export x " + variable + "='a$val{aa}' )",
        "env '" + variable + "='$val{aa} sh -c :",
        "( for " + variable + " in a '$val{aa}'; do :; done )",
        "( for " + variable + "\nin $(echo a) '$val{aa}'; do :; done )",
    };
}

void ExpectNoCodeAssigned(const std::vector<std::string>& templates) {
    Range range({"id"});
    for (const std::string& text : templates) {
        for (const std::string& value : {kArithmetic, std::string("$(id)")}) {
            range.Attempt(text, {{kFirst, {value}}});
        }
    }
    range.Run("");
}

TEST(Variables, AreGivenNoCode) {
    std::vector<std::string> templates;
    for (const std::string& variable : Variables()) {
        for (std::string& text : Assignments(variable)) {
            templates.push_back(std::move(text));
        }
    }
    ExpectNoCodeAssigned(templates);
}

TEST(Variables, OfATypeAreGivenNoCode) {
    ExpectNoCodeAssigned({
        "( declare -i x; x='$val{aa}' )",
        "( x='$val{aa}'; typeset -i y; y='$val{aa}' )",
        "( integer x; for x in '$val{aa}'; do :; done )",
        "( nameref x=OPTIND; x='$val{aa}' )",
        "( f() { local -i x; x+='$val{aa}'; }; f )",
    });
}

}  // namespace

}  // namespace Corvel::Testing
