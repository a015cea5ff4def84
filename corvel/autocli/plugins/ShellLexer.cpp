#include "corvel/autocli/plugins/ShellLexer.h"

#include <algorithm>
#include <utility>

#include "corvel/autocli/plugins/ShellQuoting.h"

namespace Corvel::AutoCli {

namespace {

/// Whether a word that begins with this text and an = is an assignment.
bool IsAssigned(std::string_view text) {
    return IsShellName(text.ends_with('+') ? text.substr(0, text.size() - 1) : text);
}

/// Whether the word, right before < or >, says which descriptor is meant: "5" or "{name}".
bool IsDescriptor(const ShellWord& word) {
    return word.isPlain && (std::all_of(word.text.begin(), word.text.end(), IsShellDigit) ||
                            (word.text.front() == '{' && word.text.back() == '}'));
}

class Lexer : ShellQuoting {
public:
    explicit Lexer(std::string_view line) : ShellQuoting(line) {}

    ShellLine Run() {
        while (!IsAtEnd() || Depth() > 1) {
            if (IsAtLimit()) {
                EndAtLimit();
            } else {
                Step();
            }
        }
        EndWord();
        return TakeReading();
    }

private:
    /// Of a here-document.
    struct Extent {
        std::size_t bodyEnd;
        std::size_t end;
    };

    void Step();
    void StepInCommands();
    void ReadSeparator(char c);
    void OpenParenthesis();
    void CloseParenthesis();
    void ReadRedirection(char c);
    void ReadBackslash();
    void ReadNumberSign();
    void ReadComment();
    void ReadWordCharacter(char c);
    void BeginDocument();
    Extent ExtentOf(const ShellHereDocument& document);
    void EndAtLimit();
};

void Lexer::Step() {
    switch (Top().kind) {
        case Kind::Commands:
        case Kind::Group:
        case Kind::Substitution:
        case Kind::Backquotes:
            return Top().isAtDocument ? BeginDocument() : StepInCommands();
        case Kind::DoubleQuotes:
        case Kind::Document:
            return StepInDoubleQuotes();
        case Kind::Parameter:
            return StepInParameter();
        case Kind::Arithmetic:
            return StepInArithmetic();
    }
}

void Lexer::StepInCommands() {
    const char c = Peek();
    switch (c) {
        case ' ':
        case '\t':
            EndWord();
            return Emit(ShellRole::Blank);
        case '\n':
        case ';':
        case '&':
        case '|':
            return ReadSeparator(c);
        case '(':
            return OpenParenthesis();
        case ')':
            return CloseParenthesis();
        case '<':
        case '>':
            return ReadRedirection(c);
        case '\\':
            return ReadBackslash();
        case '\'':
            BeginQuotedWord();
            return ReadSingleQuotes();
        case '"':
            BeginQuotedWord();
            Push(Kind::DoubleQuotes);
            return Emit(ShellRole::Quote);
        case '$':
            BeginWord();
            return ReadDollar();
        case '`':
            BeginWord();
            return ReadBackquote();
        case '#':
            return ReadNumberSign();
        default:
            return ReadWordCharacter(c);
    }
}

void Lexer::ReadSeparator(char c) {
    EndWord();
    const char next = Peek(1);
    const bool isCaseEnd = c == ';' && (next == ';' || next == '&' || next == '|');
    const bool isDouble =
        isCaseEnd || (c == '&' && next == '&') || (c == '|' && (next == '|' || next == '&'));
    const bool isTriple = isCaseEnd && next == ';' && Peek(2) == '&';
    EmitOperator(isTriple ? 3 : isDouble ? 2 : 1);
    if (isCaseEnd) {
        Top().grammar.EndCaseItem();
    } else {
        Top().grammar.EndCommand(c);
    }
    if (c == '|' && next != '|') {
        BeginFedCommand();
    } else {
        BeginCommand();
    }
    Top().isAtDocument = c == '\n';
}

void Lexer::OpenParenthesis() {
    if (Top().grammar.IsInPattern()) {
        EndWord();
        EmitOperator();
        return Top().grammar.OpenPattern();
    }
    const bool isFunction = Word() != nullptr && Peek(1) == ')';
    if (Peek(1) == '(' || (Word() != nullptr && !isFunction)) {
        DoubtTheRest();  // arithmetic, an array or a pattern, to some shells
    }
    EndWord();
    if (!Top().grammar.ExpectsCommand()) {
        NoteFunction();
    }
    Push(Kind::Group);
    EmitOperator();
}

void Lexer::CloseParenthesis() {
    EndWord();
    if (Top().grammar.IsInPattern()) {
        EmitOperator();
        Top().grammar.EndPattern();
    } else if (IsIn(Kind::Group)) {
        EmitOperator();
        Pop();
        Top().grammar.EndGroup();
        BeginCommandBehindGroup();
    } else if (IsIn(Kind::Substitution)) {
        if (Top().grammar.IsInCase()) {
            DoubtTheRest();
        }
        Close(1);
    } else {
        EmitOperator();
    }
}

void Lexer::ReadRedirection(char c) {
    if (Word() != nullptr && IsDescriptor(*Word())) {
        EndDescriptor();
    }
    EndWord();
    const char next = Peek(1);
    const bool isDocument = c == '<' && next == '<';
    const bool dropsTabs = isDocument && Peek(2) == '-';
    if (next == '(' || (isDocument && (Peek(2) == '<' || IsInBackquotes()))) {
        DoubtTheRest();
    }
    const bool isDouble = next == c || next == '&' || next == (c == '<' ? '>' : '|');
    EmitOperator(dropsTabs ? 3 : isDouble ? 2 : 1);
    if (isDocument) {
        Top().announced.push_back({{}, false, dropsTabs});
    }
    Top().grammar.Redirect(isDocument ? ShellPlace::Delimiter : ShellPlace::Target);
}

void Lexer::ReadBackslash() {
    if (IsInBackquotes() && (Peek(1) == '`' || Peek(1) == '"')) {
        DoubtTheRest();
    }
    if (Peek(1) == '\n') {
        return ReadContinuation();
    }
    BeginQuotedWord();
    if (HasAhead(1)) {
        EmitEscaped();
    } else {
        EmitData();
    }
}

void Lexer::ReadNumberSign() {
    if (Position() > 0 && Before() == '\n' && ReadBefore().role == ShellRole::Continuation) {
        DoubtTheRest();
    }
    if (Word() == nullptr) {
        return ReadComment();
    }
    // The beginning of a comment, were the byte before it a blank to some shell.
    const bool isDoubtful = Before() <= ' ' || Before() >= '\x7f';
    EmitData();
    ReadBefore().isDoubtful |= isDoubtful;
}

void Lexer::ReadComment() {
    while (!IsAtLimit() && Peek() != '\n' && !(Peek() == '`' && IsInBackquotes())) {
        Emit(ShellRole::Comment);
    }
    if (Peek() == '`') {
        DoubtTheRest();
    }
}

void Lexer::ReadWordCharacter(char c) {
    const char before = Word() == nullptr ? ' ' : Before();
    ShellWord& word = BeginWord();
    if (c == '~' && (before == ' ' || before == ':' || before == '=')) {
        EmitData();
        ReadBefore().role = ShellRole::Tilde;
        return;
    }
    if ((c == '=' || c == '[') && !std::exchange(word.hasLeftName, true) &&
        word.place == ShellPlace::Command && word.isPlain) {
        if (c == '=' && IsAssigned(word.text)) {
            word.isAssignment = true;
        } else if (c == '[' && IsShellName(word.text)) {
            DoubtTheRest();  // an element of an array, with arithmetic in it, to some shells
        }
    }
    EmitData();
}

void Lexer::BeginDocument() {
    ShellFrame& frame = Top();
    if (!frame.AwaitsDocument()) {
        frame.isAtDocument = false;
        return;
    }
    const ShellHereDocument document = std::move(frame.announced.front());
    frame.announced.pop_front();
    const Extent extent = ExtentOf(document);
    Push(Kind::Document);
    Top().documentEnd = extent.end;
    Top().outerLimit = Limit();
    SetLimit(extent.bodyEnd);
    if (document.isQuoted) {
        Emit(ShellRole::Data, extent.bodyEnd - Position());
    }
}

/// Finds the end of the here-document that begins here: it goes to the limit when its delimiter is
/// missing, and when it stands in another one, where shells differ and searching would take too long.
Lexer::Extent Lexer::ExtentOf(const ShellHereDocument& document) {
    if (IsInDocument()) {
        DoubtTheRest();
        return {Limit(), Limit()};
    }
    std::size_t begin = Position();
    while (begin < Limit()) {
        const std::size_t lineEnd = std::min(Line().find('\n', begin), Limit());
        std::string_view text = Line().substr(begin, lineEnd - begin);
        if (document.dropsTabs) {
            text.remove_prefix(std::min(text.find_first_not_of('\t'), text.size()));
        }
        if (text == document.delimiter) {
            return {begin, std::min(lineEnd + 1, Limit())};
        }
        begin = lineEnd + 1;
    }
    return {Limit(), Limit()};
}

/// Ends what is open at the end of a here-document's body, or of the line.
void Lexer::EndAtLimit() {
    while (Depth() > 1 && !IsIn(Kind::Document)) {
        DoubtTheRest();
        Pop();
    }
    if (IsIn(Kind::Document)) {
        Emit(ShellRole::Quote, Top().documentEnd - Position());
        Pop();
    }
}

}  // namespace

ShellLine ReadShellLine(std::string_view line) {
    return Lexer(line).Run();
}

}  // namespace Corvel::AutoCli
