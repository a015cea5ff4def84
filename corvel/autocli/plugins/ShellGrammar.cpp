#include "corvel/autocli/plugins/ShellGrammar.h"

#include <algorithm>
#include <initializer_list>

namespace Corvel::AutoCli {

namespace {

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

bool IsReserved(std::string_view word) {
    // Not "in", which is one only behind the word of case or for.
    return ShellGrammar::OpensCompound(word) || ShellGrammar::ClosesCompound(word) ||
           IsOneOf(word, {"!", "coproc", "do", "elif", "else", "function", "then"});
}

}  // namespace

bool ShellGrammar::OpensCompound(std::string_view reservedWord) {
    return IsOneOf(reservedWord, {"case", "for", "if", "select", "until", "while", "{"});
}

bool ShellGrammar::ClosesCompound(std::string_view reservedWord) {
    return IsOneOf(reservedWord, {"done", "esac", "fi", "}"});
}

ShellPlace ShellGrammar::NextPlace() const {
    if (_redirected != ShellPlace::None) {
        return _redirected;
    }
    switch (_expected) {
        case Expected::Command:
            return IsInPattern() ? ShellPlace::Pattern : ShellPlace::Command;
        case Expected::Argument:
        case Expected::AfterGroup:
            return ShellPlace::Argument;
        case Expected::CaseWord:
            return ShellPlace::CaseWord;
        case Expected::Name:
            return ShellPlace::Name;
        case Expected::CaseIn:
        case Expected::NameIn:
            break;
    }
    return ShellPlace::Reserved;
}

ShellPlace ShellGrammar::EndWord(const ShellWord& word) {
    const ShellPlace place = NextPlace();
    if (_redirected != ShellPlace::None) {
        _redirected = ShellPlace::None;
        return place;
    }
    switch (_expected) {
        case Expected::Command:
            return IsInPattern() ? EndPatternWord(word) : EndCommandWord(word);
        case Expected::Argument:
            break;
        case Expected::AfterGroup:
            if (word.isPlain && IsReserved(word.text)) {
                Follow(word.text);
                return ShellPlace::Reserved;
            }
            break;
        case Expected::CaseWord:
            _expected = Expected::CaseIn;
            break;
        case Expected::CaseIn:
            _casePatterns.push_back(true);
            BeginCommand();
            break;
        case Expected::Name:
            _expected = Expected::NameIn;
            break;
        case Expected::NameIn:
            if (word.text == "in") {
                _expected = Expected::Argument;
            } else {
                BeginCommand();
            }
            break;
    }
    return place;
}

ShellPlace ShellGrammar::EndPatternWord(const ShellWord& word) {
    const bool isEnd = _isFirst && word.isPlain && word.text == "esac";
    _isFirst = false;
    if (!isEnd) {
        return ShellPlace::Pattern;
    }
    Follow(word.text);
    return ShellPlace::Reserved;
}

ShellPlace ShellGrammar::EndCommandWord(const ShellWord& word) {
    if (word.isAssignment) {
        _isFirst = false;
        return ShellPlace::Assignment;
    }
    if (_isFirst && word.isPlain && IsReserved(word.text)) {
        Follow(word.text);
        return ShellPlace::Reserved;
    }
    _expected = Expected::Argument;
    return ShellPlace::Command;
}

void ShellGrammar::Follow(std::string_view reservedWord) {
    if (reservedWord == "case") {
        _expected = Expected::CaseWord;
    } else if (reservedWord == "for" || reservedWord == "select" || reservedWord == "function") {
        _expected = Expected::Name;
    } else if (ClosesCompound(reservedWord)) {
        if (reservedWord == "esac" && !_casePatterns.empty()) {
            _casePatterns.pop_back();
        }
        _expected = Expected::AfterGroup;
    } else {
        BeginCommand();
    }
}

void ShellGrammar::BeginCommand() {
    _expected = Expected::Command;
    _isFirst = true;
    _redirected = ShellPlace::None;
}

void ShellGrammar::EndCommand(char separator) {
    if (IsInPattern()) {
        _isFirst = _isFirst && separator == '\n';
        return;
    }
    const bool isBeforeIn = _expected == Expected::CaseIn || _expected == Expected::NameIn;
    if (!(isBeforeIn && separator == '\n')) {
        BeginCommand();
    }
}

void ShellGrammar::EndCaseItem() {
    if (!_casePatterns.empty()) {
        _casePatterns.back() = true;
    }
    BeginCommand();
}

void ShellGrammar::Redirect(ShellPlace place) {
    _redirected = place;
    _isFirst = false;
}

void ShellGrammar::EndPattern() {
    _casePatterns.back() = false;
    BeginCommand();
}

}  // namespace Corvel::AutoCli
