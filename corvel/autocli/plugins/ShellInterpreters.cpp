#include "corvel/autocli/plugins/ShellInterpreters.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "corvel/autocli/plugins/ShellPrograms.h"
#include "corvel/autocli/plugins/ShellVariables.h"

namespace Corvel::AutoCli {

namespace {

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

/// Whether the option of xargs says that what is read takes the place of a text.
bool IsReplacement(std::string_view text) {
    return text.starts_with("-I") || text.starts_with("-i") || text.starts_with("--replace");
}

/// Whether the word names the standard input as a file.
bool IsInputFile(const ShellWord* word) {
    constexpr auto kNames = std::to_array<std::string_view>(
        {"/dev/stdin", "/dev/fd/0", "/proc/self/fd/0", "/proc/thread-self/fd/0"});
    return std::find(kNames.begin(), kNames.end(), word->text) != kNames.end();
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

bool HasOption(Words words, std::string_view letters) {
    return std::any_of(words.begin(), words.end(), [&](const ShellWord* word) {
        return IsShortOption(word->text) && word->text.find_first_of(letters) != std::string::npos;
    });
}

/// The words before the first one that is no option.
Words LeadingOptions(Words words) {
    const auto end = std::find_if_not(words.begin(), words.end(), [](const ShellWord* word) {
        return IsShortOption(word->text);
    });
    return words.first(static_cast<std::size_t>(end - words.begin()));
}

/// Whether test compares numbers, which are arithmetic to some shells, or looks at a variable.
bool ComparesNumbers(Words words) {
    constexpr auto kOperators =
        std::to_array<std::string_view>({"-eq", "-ne", "-lt", "-le", "-gt", "-ge", "-v"});
    return std::any_of(words.begin(), words.end(), [&](const ShellWord* word) {
        return std::find(kOperators.begin(), kOperators.end(), word->text) != kOperators.end();
    });
}

bool ReadsEveryWord(const Interpreter& interpreter, Words words) {
    switch (interpreter.code) {
        case CodeIn::EveryWord:
            return true;
        case CodeIn::Declarations:
            return interpreter.codeOptions.empty() || HasOption(words, interpreter.codeOptions);
        case CodeIn::NameOption:
            return HasOption(LeadingOptions(words), interpreter.codeOptions);
        case CodeIn::Comparisons:
            return ComparesNumbers(words);
        default:
            return false;
    }
}

void MarkNames(Words words) {
    for (ShellWord* word : words) {
        const std::size_t end = word->text.find_first_of("=[");
        word->isCode |=
            end == std::string::npos || word->text[end] == '[' || AssignsCode(word->text);
    }
}

/// Marks what one command reads as code.
class CommandMarker {
public:
    explicit CommandMarker(Words words) : _words(words) {}

    void Run() {
        for (std::size_t i = 0; i < _words.size() && !_isDone; ++i) {
            _putsInputInside |= _addsInput && IsReplacement(_words[i]->text);
            ReadOption(i);
            ReadName(i);
            PassCommand(*_words[i]);
        }
    }

    /// Whether the command is an interpreter, and what it gets from standard input is code.
    bool ReadsInput() const { return _readsInput; }
    /// Whether it gives variables types: what they are assigned later may be arithmetic.
    bool DeclaresTypes() const { return _declaresTypes; }
    /// Whether it may change what the line says behind it.
    bool DefinesAlias() const { return _definesAlias; }

private:
    /// Whether the next word can be what runs: the first one, or one behind a runner.
    bool ExpectsCommand() const { return _operands > 0; }

    /// Looks at the word as one behind an interpreter.
    void ReadOption(std::size_t i) {
        const std::string_view text = _words[i]->text;
        if (_isBehindInterpreter && BringsCode(text, _codeOptions)) {
            MarkFrom(i);
            _readsInput = _putsInputInside || (_addsInput && i + 1 == _words.size());
        } else if (!text.starts_with('-') && !IsInputFile(_words[i])) {
            _readsInput = false;
            _isBehindInterpreter = _isBehindInterpreter && !IsScript(text);
        }
    }

    void ReadName(std::size_t i) {
        const Interpreter* interpreter = FindInterpreter(*_words[i]);
        if (interpreter == nullptr || _isDone) {
            return;
        }
        if (interpreter->code == CodeIn::Options) {
            // Also where it is an argument: its command may be a runner that is not known.
            _isSure = ExpectsCommand() || (_isBehindInterpreter && _isSure);
            _isBehindInterpreter = true;
            _readsInput = ExpectsCommand();
            AddCodeOptions(interpreter->codeOptions);
        } else if (!ExpectsCommand()) {
            return;
        } else if (const Words behind = _words.subspan(i + 1);
                   ReadsEveryWord(*interpreter, behind)) {
            _declaresTypes = interpreter->code == CodeIn::Declarations;
            _definesAlias = interpreter->name == "alias";
            _isSure = true;
            MarkFrom(i + 1);
            _readsInput = _addsInput || std::any_of(behind.begin(), behind.end(), IsInputFile);
        } else if (interpreter->code == CodeIn::FirstWord) {
            MarkProgram(i + 1, *interpreter);
            _readsInput = _isDone = _putsInputInside;
        } else if (interpreter->code == CodeIn::Names ||
                   interpreter->code == CodeIn::Declarations) {
            MarkNames(behind);
            _isDone = true;
        } else if (interpreter->code == CodeIn::Input) {
            _readsInput = _isDone = true;
        }
    }

    /// Marks the first word of code from there on.
    void MarkProgram(std::size_t begin, const Interpreter& interpreter) {
        bool hasCode = false;
        for (std::size_t i = begin; i < _words.size(); ++i) {
            // Options may look like interpreters themselves: what follows is read once for each.
            if (!_read.emplace(&interpreter, i, hasCode).second) {
                return;
            }
            const std::string_view text = _words[i]->text;
            if (BringsCode(text, interpreter.codeOptions)) {
                MarkAll(_words.subspan(i, std::min<std::size_t>(2, _words.size() - i)));
                hasCode = true;
                ++i;
            } else if (text.size() == 2 && text[0] == '-' &&
                       interpreter.wordOptions.find(text[1]) != std::string_view::npos) {
                hasCode |= text[1] == 'f';
                ++i;
            } else if (!text.starts_with('-')) {
                _words[i]->isCode |= !hasCode;
                return;
            }
        }
    }

    /// Counts the words between a runner and its command. What stands behind an option may be its
    /// argument, and numbers and assignments are for the runner.
    void PassCommand(ShellWord& word) {
        const std::string_view text = word.text;
        const Runner* runner = FindRunner(word);
        const bool isOption = text.starts_with('-');
        const bool isForRunner = !text.empty() && ((text[0] >= '0' && text[0] <= '9') ||
                                                   text.find('=') != std::string_view::npos);
        if (runner != nullptr && (ExpectsCommand() || isOption)) {
            _operands = 1 + runner->operands;
            _addsInput |= runner->addsInput;
        } else if (ExpectsCommand() && !isOption && !isForRunner && !_isBehindOption) {
            --_operands;
        }
        word.isCode |= ExpectsCommand() && AssignsCode(text);
        _isBehindOption = isOption && text != "--" && runner == nullptr;
    }

    void AddCodeOptions(std::string_view options) {
        for (const char option : options) {
            if (_codeOptions.find(option) == std::string::npos) {
                _codeOptions += option;
            }
        }
    }

    void MarkFrom(std::size_t i) {
        for (ShellWord* word : _words.subspan(i)) {
            (_isSure ? word->isCode : word->mayBeCode) = true;
        }
        _isDone = true;
    }

    const Words _words;
    std::size_t _operands = 1;
    bool _isBehindOption = false;
    bool _isBehindInterpreter = false;
    /// The interpreter is the command, or that of a known runner.
    bool _isSure = false;
    std::string _codeOptions;
    /// Where MarkProgram() has been, and whether it had found code by then.
    std::set<std::tuple<const Interpreter*, std::size_t, bool>> _read;
    bool _readsInput = false;
    /// The command gets words from standard input, behind its own or in the midst of them.
    bool _addsInput = false;
    bool _putsInputInside = false;
    bool _declaresTypes = false;
    bool _definesAlias = false;
    bool _isDone = false;
};

/// Finds the commands whose output some interpreter reads as code, going through the line backwards.
class CodeFeeders {
public:
    explicit CodeFeeders(ShellLine& line)
        : _line(line),
          _feeds(line.feeders.size()),
          _beginning(line.feeders.size()),
          _ending(line.feeders.size()) {}

    /// To be called for each command, the last one first.
    void Pass(std::size_t command, bool readsInput) {
        _open += _ending[command];
        _feeds[command] = _open > 0;
        const ShellCommands& feeders = _line.feeders[command];
        if ((_feeds[command] || readsInput) && !feeders.IsEmpty()) {
            ++_beginning[feeders.begin];
            ++_ending[feeders.end - 1];
        }
        _open -= _beginning[command];
    }

    /// Marks all that stands in those commands.
    void MarkWords() {
        for (ShellWord& word : _line.words) {
            word.isCode |= _feeds[word.command];
        }
    }

private:
    ShellLine& _line;
    std::vector<bool> _feeds;
    /// How many ranges of feeders begin or end with each command.
    std::vector<std::uint32_t> _beginning;
    std::vector<std::uint32_t> _ending;
    /// How many of them hold the present command.
    std::uint32_t _open = 0;
};

}  // namespace

void MarkInterpretedWords(ShellLine& line) {
    const std::size_t count = line.feeders.size();
    std::vector<std::vector<ShellWord*>> commands(count);
    for (ShellWord& word : line.words) {
        if (word.place == ShellPlace::Command ||
            (word.place == ShellPlace::Argument && !commands[word.command].empty())) {
            commands[word.command].push_back(&word);
        }
    }
    CodeFeeders feeders(line);
    bool hasTypes = false;
    bool mayBeAnything = false;
    for (std::size_t i = count; i-- > 0;) {
        CommandMarker marker(commands[i]);
        marker.Run();
        hasTypes |= marker.DeclaresTypes();
        feeders.Pass(i, marker.ReadsInput());
        mayBeAnything |= marker.DefinesAlias() || (marker.ReadsInput() && line.hasFunctions);
    }
    feeders.MarkWords();
    MarkAssignedCode(line, hasTypes);
    for (ShellWord& word : line.words) {
        word.isCode |= mayBeAnything;
    }
}

}  // namespace Corvel::AutoCli
