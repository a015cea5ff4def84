#include "corvel/autocli/plugins/ShellCommandMarker.h"

#include <algorithm>
#include <array>
#include <utility>

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

using Words = ShellCommandMarker::Words;

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
        if (end != std::string::npos && word->text[end] == '=') {
            word->place = ShellPlace::Assignment;
        } else {
            word->isCode = true;
        }
    }
}

/// How many words are neither options nor the arguments of those that take one.
std::size_t CountOperands(Words words, std::string_view wordOptions) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view text = words[i]->text;
        if (!IsShortOption(text)) {
            ++count;
        } else if (text.size() == 2 && wordOptions.find(text[1]) != std::string_view::npos) {
            ++i;
        }
    }
    return count;
}

}  // namespace

void ShellCommandMarker::Run() {
    for (std::size_t i = 0; i < _words.size() && !_isDone; ++i) {
        _putsInputInside |= _addsInput && IsReplacement(_words[i]->text);
        ReadOption(i);
        ReadName(i);
        PassWord(*_words[i]);
    }
}

/// Looks at the word as one behind an interpreter.
void ShellCommandMarker::ReadOption(std::size_t i) {
    const std::string_view text = _words[i]->text;
    if (_isBehindInterpreter && BringsCode(text, _codeOptions)) {
        MarkFrom(i);
        _readsInput = _putsInputInside || (_addsInput && i + 1 == _words.size());
    } else if (!text.starts_with('-') && !IsInputFile(_words[i])) {
        _readsInput = _keepsInput;
        _isBehindInterpreter = _isBehindInterpreter && !IsScript(text);
    }
}

void ShellCommandMarker::ReadName(std::size_t i) {
    const Interpreter* interpreter = FindInterpreter(*_words[i]);
    if (interpreter == nullptr || _isDone) {
        return;
    }
    if (interpreter->code == CodeIn::Options) {
        // Also where it is an argument: its command may be a runner that is not known.
        _isSure = ExpectsCommand() || (_isBehindInterpreter && _isSure);
        _isBehindInterpreter = true;
        _readsInput = ExpectsCommand();
        _keepsInput = ExpectsCommand() && interpreter->readsInput;
        AddCodeOptions(interpreter->codeOptions);
    } else if (ExpectsCommand()) {
        ReadCommand(*interpreter, i + 1);
    }
}

/// Looks at an interpreter that does not get its code behind options.
void ShellCommandMarker::ReadCommand(const Interpreter& interpreter, std::size_t begin) {
    if (interpreter.code == CodeIn::Comparisons && std::exchange(_isCompared, true)) {
        return;  // an earlier test has looked at all these words
    }
    const Words behind = _words.subspan(begin);
    if (ReadsEveryWord(interpreter, behind)) {
        _declaresTypes = interpreter.code == CodeIn::Declarations;
        _definesAlias = interpreter.name == "alias";
        _isSure = true;
        MarkFrom(begin);
        _readsInput =
            _addsInput || std::any_of(behind.begin(), behind.end(), IsInputFile) ||
            (interpreter.readsInput && CountOperands(behind, interpreter.wordOptions) < 2);
        return;
    }
    switch (interpreter.code) {
        case CodeIn::FirstWord:
            _isDone = _readsInput = MarkProgram(begin, interpreter) || _putsInputInside;
            break;
        case CodeIn::Names:
        case CodeIn::Declarations:
            MarkNames(behind);
            _isDone = true;
            break;
        case CodeIn::Input:
            _isDone = _readsInput = true;
            break;
        default:
            break;
    }
}

/// Marks the first word of code from there on.
/// @return whether the program comes from standard input.
bool ShellCommandMarker::MarkProgram(std::size_t begin, const Interpreter& interpreter) {
    bool hasCode = false;
    for (std::size_t i = begin; i < _words.size(); ++i) {
        // Options may look like interpreters themselves: what follows is read once for each.
        if (!_read.emplace(&interpreter, i, hasCode).second) {
            return false;
        }
        const std::string_view text = _words[i]->text;
        if (BringsCode(text, interpreter.codeOptions)) {
            MarkAll(_words.subspan(i, std::min<std::size_t>(2, _words.size() - i)));
            hasCode = true;
            ++i;
        } else if (text.size() == 2 && text[0] == '-' &&
                   interpreter.wordOptions.find(text[1]) != std::string_view::npos) {
            const bool isFile = text[1] == 'f';
            hasCode |= isFile;
            ++i;
            if (isFile && i < _words.size() && (_words[i]->text == "-" || IsInputFile(_words[i]))) {
                return true;
            }
        } else if (!text.starts_with('-')) {
            _words[i]->isCode |= !hasCode;
            return false;
        }
    }
    return false;
}

/// Goes on behind the word: it may begin a runner, stand between one and its command, or be that.
void ShellCommandMarker::PassWord(ShellWord& word) {
    const std::string_view text = word.text;
    if (const Runner* runner = FindRunner(word);
        runner != nullptr && (ExpectsCommand() || text.starts_with('-'))) {
        BeginRunner(*runner);
        return;
    }
    if (!ExpectsCommand()) {
        return;
    }
    word.isCode |= AssignsCode(text);
    if (_runner != nullptr) {
        _startsShell |=
            (IsShortOption(text) && text.find_first_of(_runner->shellOptions) != text.npos) ||
            (!_runner->shellOptions.empty() && (text == "--shell" || text == "--login"));
    }
    if (_runner != nullptr && _runner->wordOptions) {
        PassOperand(word);
    } else {
        GuessOperand(text);
    }
}

void ShellCommandMarker::BeginRunner(const Runner& runner) {
    _runner = &runner;
    _operands = 1 + runner.operands;
    _addsInput |= runner.addsInput;
    _startsShell = false;
    _isBehindOption = false;
}

/// Says what the word is to a runner whose options are known.
void ShellCommandMarker::PassOperand(ShellWord& word) {
    const std::string_view text = word.text;
    const bool isArgument = std::exchange(_isBehindOption, false);
    word.place = ShellPlace::Operand;
    if (isArgument || (!text.starts_with('-') && text.find('=') != text.npos)) {
        return;
    }
    if (text.starts_with('-')) {
        const std::size_t letter = text.find_first_of(*_runner->wordOptions, 1);
        _isBehindOption = IsShortOption(text) ? letter == text.size() - 1
                                              : text != "--" && text.find('=') == text.npos;
    } else if (--_operands == 0) {
        word.place = ShellPlace::Command;
    }
}

/// The same where they are not: what stands behind an option may be its argument, and numbers and
/// assignments are for the runner.
void ShellCommandMarker::GuessOperand(std::string_view text) {
    const bool isOption = text.starts_with('-');
    const bool isForRunner = !text.empty() && ((text[0] >= '0' && text[0] <= '9') ||
                                               text.find('=') != std::string_view::npos);
    if (!isOption && !isForRunner && !_isBehindOption) {
        --_operands;
    }
    _isBehindOption = isOption && text != "--";
}

void ShellCommandMarker::AddCodeOptions(std::string_view options) {
    for (const char option : options) {
        if (_codeOptions.find(option) == std::string::npos) {
            _codeOptions += option;
        }
    }
}

void ShellCommandMarker::MarkFrom(std::size_t i) {
    for (ShellWord* word : _words.subspan(i)) {
        (_isSure ? word->isCode : word->mayBeCode) = true;
    }
    _isDone = true;
}

}  // namespace Corvel::AutoCli
