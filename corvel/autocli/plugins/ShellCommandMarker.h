#pragma once

#include <cstddef>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <tuple>

#include "corvel/autocli/plugins/ShellLine.h"
#include "corvel/autocli/plugins/ShellPrograms.h"

namespace Corvel::AutoCli {

/// Marks what one simple command reads as code, word by word: it looks through programs that run others,
/// and for what interpreters take.
class ShellCommandMarker final {
public:
    using Words = std::span<ShellWord* const>;

    /// @param words  the command's name and arguments, which live as long as this.
    explicit ShellCommandMarker(Words words) : _words(words) {}

    void Run();

    /// Whether the command is an interpreter, and what it gets from standard input is code.
    bool ReadsInput() const { return _readsInput || (_startsShell && ExpectsCommand()); }
    /// Whether it gives variables types: what they are assigned later may be arithmetic.
    bool DeclaresTypes() const { return _declaresTypes; }
    /// Whether it may change what the line says behind it.
    bool DefinesAlias() const { return _definesAlias; }

private:
    /// Whether the next word can be what runs: the first one, or one behind a runner.
    bool ExpectsCommand() const { return _operands > 0; }

    void ReadOption(std::size_t i);
    void ReadName(std::size_t i);
    void ReadCommand(const Interpreter& interpreter, std::size_t begin);
    bool MarkProgram(std::size_t begin, const Interpreter& interpreter);
    void PassWord(ShellWord& word);
    void BeginRunner(const Runner& runner);
    void PassOperand(ShellWord& word);
    void GuessOperand(std::string_view text);
    void AddCodeOptions(std::string_view options);
    void MarkFrom(std::size_t i);

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
    /// It reads on, whatever operands it has.
    bool _keepsInput = false;
    const Runner* _runner = nullptr;
    /// The runner runs a shell if nothing else is named.
    bool _startsShell = false;
    /// The command gets words from standard input, behind its own or in the midst of them.
    bool _addsInput = false;
    bool _putsInputInside = false;
    /// Some test has been looked at.
    bool _isCompared = false;
    bool _declaresTypes = false;
    bool _definesAlias = false;
    bool _isDone = false;
};

}  // namespace Corvel::AutoCli
