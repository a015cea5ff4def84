#pragma once

#include <string_view>
#include <vector>

#include "corvel/autocli/plugins/ShellLine.h"

namespace Corvel::AutoCli {

/// Tells what each word of a sequence of shell commands is to its command: the part of the shell's
/// grammar that depends on words, not on characters.
///
/// Wants to hear of everything in the order of the line. Of a text that no shell accepts, it makes
/// what the first part of it allows; it refuses nothing.
class ShellGrammar final {
public:
    /// Whether the reserved word begins or ends several commands that count as one.
    static bool OpensCompound(std::string_view reservedWord);
    static bool ClosesCompound(std::string_view reservedWord);

    /// @return what a word that begins here is, as far as its beginning tells.
    ShellPlace NextPlace() const;
    /// @return what the word turned out to be.
    ShellPlace EndWord(const ShellWord& word);

    /// A ; & | && || or a newline.
    void EndCommand(char separator);
    /// One of ;; ;& ;;& and ;|
    void EndCaseItem();
    /// A redirection, whose next word is the place given.
    void Redirect(ShellPlace place);
    /// The ( or ) of the pattern of a case item.
    void OpenPattern() { _isFirst = false; }
    void EndPattern();
    /// The end of a ( .. ), or the () behind a function's name.
    void EndGroup() { BeginCommand(); }

    bool ExpectsCommand() const { return _expected == Expected::Command && !IsInPattern(); }
    bool IsInPattern() const {
        return !_casePatterns.empty() && _casePatterns.back() && _expected == Expected::Command;
    }
    bool IsInCase() const { return !_casePatterns.empty(); }

private:
    enum class Expected { Command, Argument, AfterGroup, CaseWord, CaseIn, Name, NameIn };

    ShellPlace EndPatternWord(const ShellWord& word);
    ShellPlace EndCommandWord(const ShellWord& word);
    void Follow(std::string_view reservedWord);
    void BeginCommand();

    Expected _expected = Expected::Command;
    /// No assignment and no redirection stands before, nor a word or parenthesis of the pattern.
    bool _isFirst = true;
    ShellPlace _redirected = ShellPlace::None;
    /// One for each open case: whether its next words are patterns.
    std::vector<bool> _casePatterns;
};

}  // namespace Corvel::AutoCli
