#include "corvel/autocli/plugins/ShellInterpreters.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "corvel/autocli/plugins/ShellPrograms.h"

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
            PassCommand(*_words[i]);
        }
        return _readsInput;
    }

private:
    /// Whether the next word can be what runs: the first one, or one behind a runner.
    bool ExpectsCommand() const { return _operands > 0; }

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
        } else if (interpreter->code == CodeIn::EveryWord) {
            _isSure = true;
            MarkFrom(i + 1);
        } else if (interpreter->code == CodeIn::Names) {
            MarkNames(_words.subspan(i + 1));
            _isDone = true;
        } else {
            MarkProgram(i + 1, *interpreter);
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
    void PassCommand(const ShellWord& word) {
        const std::string_view text = word.text;
        const Runner* runner = FindRunner(word);
        const bool isOption = text.starts_with('-');
        const bool isForRunner = !text.empty() && ((text[0] >= '0' && text[0] <= '9') ||
                                                   text.find('=') != std::string_view::npos);
        if (runner != nullptr && (ExpectsCommand() || isOption)) {
            _operands = 1 + runner->operands;
        } else if (ExpectsCommand() && !isOption && !isForRunner && !_isBehindOption) {
            --_operands;
        }
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
        _readsInput = false;
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
    std::vector<bool> isFed(commands.size(), false);
    for (std::size_t i = commands.size(); i-- > 0;) {
        if (!commands[i].empty() && CommandMarker(commands[i]).Run()) {
            // Behind one that feeds another interpreter, all are marked already.
            for (std::uint32_t fed = line.feeders[i]; fed != ShellLine::kNoCommand && !isFed[fed];
                 fed = line.feeders[fed]) {
                MarkAll(commands[fed]);
                isFed[fed] = true;
            }
        }
    }
}

}  // namespace Corvel::AutoCli
