#include "corvel/autocli/plugins/ShellInterpreters.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Corvel::AutoCli {

namespace {

/// How a program gets its code.
enum class CodeIn {
    Nothing,
    EveryWord,
    Names,     // in words that do not begin as an assignment
    Options,   // behind an option with one of the letters, else from standard input
    FirstWord  // the first word that is no option, unless an option brings the code
};

struct Interpreter {
    std::string_view name;
    CodeIn code = CodeIn::Nothing;
    /// The one-letter options behind which code stands.
    std::string_view codeOptions = {};
    /// Those behind which another word stands that is no code.
    std::string_view wordOptions = {};
};

using enum CodeIn;

// Names without folder and version, in alphabetical order.
constexpr auto kInterpreters = std::to_array<Interpreter>({
    {".", EveryWord},
    {"alias", EveryWord},
    {"ash", Options, "c"},
    {"awk", FirstWord, "e", "vFfi"},
    {"bash", Options, "c"},
    {"bun", Options, "ep"},
    {"csh", Options, "c"},
    {"dash", Options, "c"},
    {"declare", Names},
    {"deno", Options, "ep"},
    {"dsh", EveryWord},
    {"elvish", Options, "c"},
    {"emacs", Options, ""},
    {"eval", EveryWord},
    {"ex", Options, "c"},
    {"expect", Options, "c"},
    {"export", Names},
    {"fish", Options, "cC"},
    {"flock", Options, "c"},
    {"gawk", FirstWord, "e", "vFfi"},
    {"gdb", Options, "e"},
    {"getopts", Names},
    {"gmake", EveryWord},
    {"groovy", Options, "e"},
    {"guile", Options, "c"},
    {"hush", Options, "c"},
    {"ipython", Options, "c"},
    {"julia", Options, "eE"},
    {"ksh", Options, "c"},
    {"let", EveryWord},
    {"lksh", Options, "c"},
    {"local", Names},
    {"lua", Options, "e"},
    {"luajit", Options, "e"},
    {"make", EveryWord},
    {"mapfile", Names},
    {"mariadb", Options, "e"},
    {"mawk", FirstWord, "e", "vFfW"},
    {"mksh", Options, "c"},
    {"mysql", Options, "e"},
    {"nawk", FirstWord, "e", "vFf"},
    {"node", Options, "ep"},
    {"nodejs", Options, "ep"},
    {"nvim", Options, "c"},
    {"oksh", Options, "c"},
    {"osh", Options, "c"},
    {"parallel", EveryWord},
    {"pdksh", Options, "c"},
    {"pdsh", EveryWord},
    {"perl", Options, "eE"},
    {"php", Options, "rBRE"},
    {"posh", Options, "c"},
    {"psql", Options, "c"},
    {"pssh", EveryWord},
    {"pwsh", Options, "ce"},
    {"pypy", Options, "c"},
    {"python", Options, "c"},
    {"rbash", Options, "c"},
    {"rc", Options, "c"},
    {"read", Names},
    {"readarray", Names},
    {"readonly", Names},
    {"rksh", Options, "c"},
    {"rsh", EveryWord},
    {"Rscript", Options, "e"},
    {"ruby", Options, "e"},
    {"runuser", Options, "c"},
    {"sash", Options, "c"},
    {"screen", EveryWord},
    {"script", Options, "c"},
    {"sed", FirstWord, "e", "fl"},
    {"sh", Options, "c"},
    {"source", EveryWord},
    {"sqlite", EveryWord},
    {"ssh", EveryWord},
    {"su", Options, "c"},
    {"tcsh", Options, "c"},
    {"tmux", EveryWord},
    {"trap", EveryWord},
    {"typeset", Names},
    {"unset", EveryWord},
    {"vi", Options, "c"},
    {"vim", Options, "c"},
    {"watch", EveryWord},
    {"yash", Options, "c"},
    {"zsh", Options, "c"},
});

/// Programs and words that run the command in the words behind them.
constexpr auto kRunners = std::to_array<std::string_view>({
    "bwrap",
    "builtin",
    "busybox",
    "capsh",
    "cgexec",
    "chpst",
    "chroot",
    "chrt",
    "command",
    "coproc",
    "dbus-run-session",
    "docker",
    "doas",
    "env",
    "eatmydata",
    "exec",
    "faketime",
    "fakeroot",
    "find",
    "firejail",
    "gosu",
    "ionice",
    "ip",
    "kubectl",
    "lxc-attach",
    "ltrace",
    "machinectl",
    "nice",
    "nohup",
    "nsenter",
    "numactl",
    "podman",
    "prlimit",
    "proxychains",
    "rlwrap",
    "runcon",
    "setarch",
    "setpriv",
    "setsid",
    "setuidgid",
    "softlimit",
    "start-stop-daemon",
    "stdbuf",
    "strace",
    "su-exec",
    "sudo",
    "systemd-run",
    "taskset",
    "time",
    "timeout",
    "torsocks",
    "toybox",
    "unbuffer",
    "unshare",
    "valgrind",
    "xargs",
    "xvfb-run",
});

/// Long options behind which, or behind whose =, code stands.
constexpr auto kLongOptions = std::to_array<std::string_view>({
    "--command",
    "--eval",
    "--exec",
    "--execute",
    "--expression",
    "--init-command",
    "--print",
    "--run",
    "--session-command",
    "--source",
});

/// The name of the program that the word runs: without folder and version.
std::string_view ProgramName(const ShellWord& word) {
    std::string_view name = word.text;
    name.remove_prefix(std::min(name.rfind('/') + 1, name.size()));
    while (name.size() > 1 && std::string_view("0123456789.-").find(name.back()) != name.npos) {
        name.remove_suffix(1);
    }
    return name;
}

/// Whether the name comes from an expansion, so that the word may run anything.
bool IsUnknownProgram(const ShellWord& word) {
    return !word.isKnown && ProgramName(word).find(ShellWord::kExpanded) != std::string_view::npos;
}

const Interpreter* FindInterpreter(const ShellWord& word) {
    static constexpr Interpreter kUnknown = {"", Options, "ce"};
    if (IsUnknownProgram(word)) {
        return &kUnknown;
    }
    const std::string_view name = ProgramName(word);
    const auto* found = std::find_if(kInterpreters.begin(),
                                     kInterpreters.end(),
                                     [&](const Interpreter& known) { return known.name == name; });
    return found == kInterpreters.end() ? nullptr : found;
}

bool IsRunner(const ShellWord& word) {
    return IsUnknownProgram(word) ||
           std::find(kRunners.begin(), kRunners.end(), ProgramName(word)) != kRunners.end();
}

bool IsShortOption(std::string_view text) {
    return text.size() > 1 && text[0] == '-' && text[1] != '-';
}

bool BringsCode(std::string_view text, std::string_view codeOptions) {
    return (IsShortOption(text) && text.find_first_of(codeOptions) != std::string_view::npos) ||
           std::find(kLongOptions.begin(), kLongOptions.end(), text.substr(0, text.find('='))) !=
               kLongOptions.end();
}

/// Whether the word is the file that an interpreter is to run, not an option's argument.
bool IsScript(std::string_view text) {
    return !text.starts_with('-') && text.find_first_of("./") != std::string_view::npos;
}

using Words = std::span<ShellWord* const>;

void MarkAll(Words words) {
    for (ShellWord* word : words) {
        word->isCode = true;
    }
}

void MarkNames(Words words) {
    for (ShellWord* word : words) {
        const std::size_t end = word->text.find_first_of("=[");
        word->isCode |= end == std::string::npos || word->text[end] == '[';
    }
}

void MarkProgram(Words words, const Interpreter& interpreter) {
    bool hasCode = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view text = words[i]->text;
        if (BringsCode(text, interpreter.codeOptions)) {
            MarkAll(words.subspan(i, std::min<std::size_t>(2, words.size() - i)));
            hasCode = true;
            ++i;
        } else if (text.size() == 2 && text[0] == '-' &&
                   interpreter.wordOptions.find(text[1]) != std::string_view::npos) {
            hasCode |= text[1] == 'f';
            ++i;
        } else if (!text.starts_with('-')) {
            words[i]->isCode |= !hasCode;
            return;
        }
    }
}

/// Whether test compares numbers, which are arithmetic to some shells, or looks at a variable.
bool IsArithmeticTest(Words words) {
    constexpr auto kOperators =
        std::to_array<std::string_view>({"-eq", "-ne", "-lt", "-le", "-gt", "-ge", "-v"});
    const std::string_view name = words.front()->text;
    return (name == "test" || name == "[") &&
           std::any_of(words.begin(), words.end(), [&](const ShellWord* word) {
               return std::find(kOperators.begin(), kOperators.end(), word->text) !=
                      kOperators.end();
           });
}

/// Marks what one command reads as code.
class CommandMarker {
public:
    explicit CommandMarker(Words words) : _words(words) {}

    /// @return whether the command is an interpreter that reads its code from standard input.
    bool Run() {
        if (IsArithmeticTest(_words)) {
            MarkAll(_words.subspan(1));
        }
        for (std::size_t i = 0; i < _words.size() && !_isDone; ++i) {
            ReadOption(i);
            ReadName(i);
            _mayBeCommand = _mayBeCommand && (i > 0 || IsRunner(*_words[0]));
        }
        return _readsInput;
    }

private:
    /// Looks at the word as one behind an interpreter.
    void ReadOption(std::size_t i) {
        const std::string_view text = _words[i]->text;
        if (_isBehindInterpreter && BringsCode(text, _codeOptions)) {
            MarkFrom(i);
        } else if (!text.starts_with('-')) {
            _readsInput = false;
            _isBehindInterpreter = _isBehindInterpreter && !IsScript(text);
        }
    }

    void ReadName(std::size_t i) {
        const Interpreter* interpreter = FindInterpreter(*_words[i]);
        if (interpreter == nullptr) {
            return;
        }
        if (interpreter->code == CodeIn::Options) {
            // Also where it is an argument: of a runner that is not known.
            _isBehindInterpreter = true;
            AddCodeOptions(interpreter->codeOptions);
            _readsInput = _mayBeCommand;
        } else if (!_mayBeCommand) {
            return;
        } else if (interpreter->code == CodeIn::EveryWord) {
            MarkFrom(i + 1);
        } else if (interpreter->code == CodeIn::Names) {
            MarkNames(_words.subspan(i + 1));
            _isDone = true;
        } else {
            MarkProgram(_words.subspan(i + 1), *interpreter);
        }
    }

    void AddCodeOptions(std::string_view options) {
        for (const char option : options) {
            if (_codeOptions.find(option) == std::string::npos) {
                _codeOptions += option;
            }
        }
    }

    void MarkFrom(std::size_t i) {
        MarkAll(_words.subspan(i));
        _readsInput = false;
        _isDone = true;
    }

    const Words _words;
    bool _mayBeCommand = true;
    bool _isBehindInterpreter = false;
    std::string _codeOptions;
    bool _readsInput = false;
    bool _isDone = false;
};

}  // namespace

void MarkInterpretedWords(ShellLine& line) {
    std::vector<std::vector<ShellWord*>> commands(line.feeders.size());
    for (ShellWord& word : line.words) {
        if (word.place == ShellPlace::Command ||
            (word.place == ShellPlace::Argument && !commands[word.command].empty())) {
            commands[word.command].push_back(&word);
        }
    }
    for (std::size_t i = commands.size(); i-- > 0;) {
        if (!commands[i].empty() && CommandMarker(commands[i]).Run()) {
            for (std::uint32_t fed = line.feeders[i]; fed != ShellLine::kNoCommand;
                 fed = line.feeders[fed]) {
                MarkAll(commands[fed]);
            }
        }
    }
}

}  // namespace Corvel::AutoCli
