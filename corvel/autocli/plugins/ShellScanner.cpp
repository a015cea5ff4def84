#include "corvel/autocli/plugins/ShellScanner.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Corvel::AutoCli {

namespace {

/// Words with which only some shells begin a construct of their own.
bool IsReadDifferently(const ShellWord& word) {
    constexpr std::array<std::string_view, 4> kWords = {"[[", "coproc", "function", "select"};
    return word.isPlain &&
           (word.place == ShellPlace::Command || word.place == ShellPlace::Reserved) &&
           std::find(kWords.begin(), kWords.end(), word.text) != kWords.end();
}

/// Whether the second can stand right behind the first in an operator of some shell.
bool IsTailOf(char first, char second) {
    const auto isOneOf = [second](std::string_view tails) {
        return second != '\0' && tails.find(second) != std::string_view::npos;
    };
    switch (first) {
        case ';':
            return isOneOf(";&|");
        case '&':
            return isOneOf("&>");
        case '|':
            return isOneOf("|&");
        case '<':
            return isOneOf("<>&(-");
        case '>':
            return isOneOf(">&|(");
        case '(':
            return isOneOf("(");
        default:
            return false;
    }
}

}  // namespace

ShellScanner::ShellScanner(std::string_view line) : _line(line), _limit(line.size()) {
    _read.bytes.resize(line.size());
    Push(Kind::Commands);
}

void ShellScanner::Push(Kind kind) {
    ShellFrame frame{kind, _frames.size()};
    if (!frame.HoldsCommands()) {
        frame.owner = Top().owner;
        frame.isInQuotes = IsIn(Kind::DoubleQuotes) || IsIn(Kind::Document);
    } else if (!_frames.empty() && Owner().AwaitsDocument()) {
        DoubtTheRest();  // which newline begins the here-document?
    }
    _expansions += frame.IsExpansion() ? 1U : 0U;
    _backquotes += kind == Kind::Backquotes ? 1U : 0U;
    _documents += kind == Kind::Document ? 1U : 0U;
    const bool holdsCommands = frame.HoldsCommands();
    if (holdsCommands && !_frames.empty()) {
        frame.input = _read.feeders[Owner().command];
    }
    _frames.push_back(std::move(frame));
    if (holdsCommands) {
        BeginCommand();
    }
}

void ShellScanner::Pop() {
    if (Top().HoldsCommands()) {
        EndWord();
    }
    ShellFrame frame = std::move(Top());
    _frames.pop_back();
    if (frame.kind == Kind::Document) {
        _limit = frame.outerLimit;
    }
    if (frame.kind == Kind::Group) {
        std::list<ShellHereDocument>& announced = Owner().announced;
        announced.splice(announced.end(), frame.announced);
    } else if (frame.AwaitsDocument()) {
        DoubtTheRest();
    }
    _expansions -= frame.IsExpansion() ? 1U : 0U;
    _backquotes -= frame.kind == Kind::Backquotes ? 1U : 0U;
    _documents -= frame.kind == Kind::Document ? 1U : 0U;
}

void ShellScanner::Emit(ShellRole role, std::size_t count) {
    const ShellByte byte{role, _isDoubtful || _expansions > 0, Owner().word};
    const std::size_t end = std::min(_position + count, _line.size());
    while (_position < end) {
        _read.bytes[_position++] = byte;
    }
}

void ShellScanner::EmitOperator(std::size_t count) {
    for (; count > 0; --count) {
        Emit(ContinuesOperator(Peek()) ? ShellRole::OperatorTail : ShellRole::Operator);
    }
}

bool ShellScanner::IsBehindOperator() {
    return _position > 0 && (ReadBefore().role == ShellRole::Operator ||
                             ReadBefore().role == ShellRole::OperatorTail);
}

bool ShellScanner::ContinuesOperator(char c) {
    return IsBehindOperator() && IsTailOf(Before(), c);
}

void ShellScanner::EmitData() {
    if (ShellWord* word = Word()) {
        word->text += _line[_position];
    }
    Emit(ShellRole::Data);
}

void ShellScanner::EmitEscaped() {
    Emit(ShellRole::Escape);
    EmitData();
}

void ShellScanner::EmitExpansion(std::size_t count) {
    if (ShellWord* word = Word()) {
        word->isPlain = word->isKnown = false;
        word->text += ShellWord::kExpanded;
    }
    Emit(ShellRole::Expansion, count);
}

void ShellScanner::Open(Kind kind, std::size_t count) {
    ++_expansions;
    EmitExpansion(count);
    --_expansions;
    Push(kind);
}

void ShellScanner::Close(std::size_t count) {
    Pop();
    ++_expansions;
    EmitExpansion(count);
    --_expansions;
}

ShellWord* ShellScanner::Word() {
    const std::uint32_t word = Owner().word;
    return word == ShellByte::kNoWord ? nullptr : &_read.words[word];
}

ShellWord& ShellScanner::BeginWord() {
    if (Word() == nullptr) {
        Top().word = static_cast<std::uint32_t>(_read.words.size());
        ShellWord& word = _read.words.emplace_back();
        word.place = Top().grammar.NextPlace();
        word.command = Top().command;
    }
    return *Word();
}

ShellWord& ShellScanner::BeginQuotedWord() {
    ShellWord& word = BeginWord();
    word.isPlain = false;
    return word;
}

void ShellScanner::EndWord() {
    ShellWord* word = Word();
    if (word == nullptr) {
        return;
    }
    word->place = Top().grammar.EndWord(*word);
    if (word->place == ShellPlace::Delimiter) {
        EndDelimiter(*word);
    }
    if (IsReadDifferently(*word)) {
        DoubtTheRest();
    }
    if (word->place == ShellPlace::Reserved) {
        FollowReserved(word->text);
    }
    Top().word = ShellByte::kNoWord;
}

void ShellScanner::EndDelimiter(const ShellWord& word) {
    if (Top().announced.empty()) {
        DoubtTheRest();  // the line of the << has ended before: no shell takes this for its delimiter
        return;
    }
    ShellHereDocument& document = Top().announced.back();
    document.delimiter = word.text;
    document.isQuoted = !word.isPlain;
    if (!word.isKnown || word.text.find_first_of("$`\n") != std::string::npos) {
        DoubtTheRest();
    }
}

void ShellScanner::EndDescriptor() {
    Word()->place = ShellPlace::Descriptor;
    Top().word = ShellByte::kNoWord;
}

void ShellScanner::FollowReserved(std::string_view word) {
    ShellFrame& frame = Top();
    if (ShellGrammar::OpensCompound(word)) {
        frame.compounds.push_back({frame.pipeBegin, frame.input});
        frame.input = _read.feeders[frame.command];
        BeginCommand();
    } else if (ShellGrammar::ClosesCompound(word) && !frame.compounds.empty()) {
        frame.pipeBegin = frame.compounds.back().pipeBegin;
        frame.input = frame.compounds.back().input;
        frame.compounds.pop_back();
    }
}

void ShellScanner::BeginCommand(ShellCommands feeders) {
    Top().command = Top().pipeBegin = static_cast<std::uint32_t>(_read.feeders.size());
    _read.feeders.push_back(feeders);
}

void ShellScanner::BeginCommand() {
    BeginCommand(Top().input);
}

void ShellScanner::BeginFedCommand() {
    BeginCommand({Top().pipeBegin, static_cast<std::uint32_t>(_read.feeders.size())});
}

void ShellScanner::BeginCommandBehindGroup() {
    const std::uint32_t pipeBegin = Top().pipeBegin;
    BeginCommand();
    Top().pipeBegin = pipeBegin;
}

}  // namespace Corvel::AutoCli
