#include "corvel/autocli/plugins/ShellQuoting.h"

#include <algorithm>

namespace Corvel::AutoCli {

namespace {

/// The variables without names.
bool IsSpecialParameter(char c) {
    return c != '\0' && std::string_view("@*#?-$!").find(c) != std::string_view::npos;
}

}  // namespace

bool IsShellDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsShellNameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || IsShellDigit(c);
}

bool IsShellName(std::string_view text) {
    return !text.empty() && !IsShellDigit(text.front()) &&
           std::all_of(text.begin(), text.end(), IsShellNameCharacter);
}

void ShellQuoting::ReadSingleQuotes() {
    Emit(ShellRole::Quote);
    while (!IsAtLimit() && Peek() != '\'') {
        if (Peek() == '`' && IsInBackquotes()) {
            DoubtTheRest();
        }
        EmitData();
    }
    if (!IsAtLimit()) {
        Emit(ShellRole::Quote);
    }
}

void ShellQuoting::StepInDoubleQuotes() {
    const char c = Peek();
    if (c == '"' && IsIn(Kind::DoubleQuotes)) {
        Emit(ShellRole::Quote);
        Pop();
    } else if (c == '$') {
        ReadDollar();
    } else if (c == '`') {
        ReadBackquote();
    } else if (c == '\\') {
        ReadBackslashInDoubleQuotes();
    } else {
        EmitData();
    }
}

void ShellQuoting::ReadBackslashInDoubleQuotes() {
    const char next = Peek(1);
    if (IsInBackquotes() && (next == '`' || next == '"')) {
        DoubtTheRest();
    }
    if (next == '\n') {
        ReadContinuation();
        if (IsIn(Kind::Document)) {
            DoubtTheRest();  // is the next line the delimiter?
        }
    } else if (next == '$' || next == '`' || next == '\\' ||
               (next == '"' && IsIn(Kind::DoubleQuotes))) {
        EmitEscaped();
    } else {
        EmitData();
    }
}

void ShellQuoting::ReadContinuation() {
    // Some shells join $ and ( over it, or < and <, and some do not.
    if ((Position() > 0 && (Before() == '$' || Before() == '<' || Before() == '>')) ||
        (IsBehindOperator() && ContinuesOperator(BehindContinuations()))) {
        DoubtTheRest();
    }
    Emit(ShellRole::Continuation, 2);
}

char ShellQuoting::BehindContinuations() const {
    std::size_t ahead = 0;
    while (Peek(ahead) == '\\' && Peek(ahead + 1) == '\n') {
        ahead += 2;
    }
    return Peek(ahead);
}

void ShellQuoting::ReadDollar() {
    const char next = Peek(1);
    const bool isQuoted = !Top().HoldsCommands();
    if (IsShellNameCharacter(next)) {
        ReadVariable();
    } else if (IsSpecialParameter(next)) {
        EmitExpansion(2);
    } else if (next == '{') {
        Open(Kind::Parameter, 2);
        const char first = Peek();
        if (first == ' ' || first == '\t' || first == '\n' || first == '|') {
            DoubtTheRest();  // commands, to some shells
        }
    } else if (next == '(' && Peek(2) == '(') {
        Open(Kind::Arithmetic, 3);
    } else if (next == '(') {
        Open(Kind::Substitution, 2);
    } else if (next == '[' || (next == '\'' && !isQuoted)) {
        DoubtTheRest();  // arithmetic, or backslashes in the quotes, to some shells
        EmitExpansion(1);
    } else if (next == '"' && !isQuoted) {
        EmitExpansion(1);
    } else {
        EmitData();
    }
}

void ShellQuoting::ReadVariable() {
    EmitExpansion(1);
    const bool isDigit = IsShellDigit(Peek());
    do {
        EmitExpansion(1);
    } while (!isDigit && IsShellNameCharacter(Peek()));
}

void ShellQuoting::ReadBackquote() {
    if (!IsInBackquotes()) {
        Open(Kind::Backquotes, 1);
        return;
    }
    // The first one without a backslash ends the text, whatever is open in it.
    while (!IsIn(Kind::Backquotes)) {
        DoubtTheRest();
        Pop();
    }
    Close(1);
}

void ShellQuoting::StepInParameter() {
    const char c = Peek();
    const bool isHead = Top().part == ShellFrame::Part::Name && c != '`' && c != '\\';
    if (c == '}') {
        Close(1);
    } else if (c == '\'' || c == '"') {
        ReadQuoteInParameter(c);
    } else if (isHead) {
        ReadParameterHead(c);
    } else if (c == '$') {
        ReadDollar();
    } else if (c == '`') {
        ReadBackquote();
    } else if (c == '\\' && Peek(1) == '\n') {
        ReadContinuation();
    } else if (c == '\\' && HasAhead(1)) {
        EmitEscaped();
    } else {
        EmitData();
    }
}

/// Reads one byte of the name, or the whole operator behind it.
void ShellQuoting::ReadParameterHead(char c) {
    const bool isPrefix = Before() == '{' && IsSpecialParameter(c);
    if (isPrefix || IsShellNameCharacter(c)) {
        EmitExpansion(1);
        return;
    }
    Top().part = ShellFrame::Part::Word;
    const char next = Peek(1);
    const bool isWithColon = c == ':' && (next == '-' || next == '=' || next == '?' || next == '+');
    const bool isDoubled = next == c && (c == '%' || c == '#' || c == '/' || c == '^' || c == ',');
    EmitExpansion(isWithColon || isDoubled ? 2 : 1);
}

void ShellQuoting::ReadQuoteInParameter(char quote) {
    const bool isInQuotes = Top().isInQuotes;
    if (isInQuotes) {
        DoubtTheRest();  // shells differ in what is a quote here
    }
    if (quote == '"') {
        Push(Kind::DoubleQuotes);
        Emit(ShellRole::Quote);
    } else if (isInQuotes) {
        EmitData();
    } else {
        ReadSingleQuotes();
    }
}

void ShellQuoting::StepInArithmetic() {
    const char c = Peek();
    if (c == '$') {
        ReadDollar();
    } else if (c == '`') {
        ReadBackquote();
    } else if (c == ')' && Top().openParentheses == 0) {
        CloseArithmetic();
    } else if (c == '(') {
        ++Top().openParentheses;
        EmitData();
    } else if (c == ')') {
        --Top().openParentheses;
        EmitData();
    } else if (c == '\'' || c == '"' || c == '\\') {
        DoubtTheRest();
        EmitData();
    } else {
        ReadArithmeticCharacter(c);
    }
}

void ShellQuoting::CloseArithmetic() {
    const bool isWhole = Peek(1) == ')';
    if (!isWhole) {
        DoubtTheRest();  // a $( whose first command is a ( .. )
    }
    Close(isWhole ? 2 : 1);
}

/// Names are variables, whose values are arithmetic once more.
void ShellQuoting::ReadArithmeticCharacter(char c) {
    const bool isInside = IsShellNameCharacter(Before());
    const bool isOfName = isInside ? ReadBefore().role == ShellRole::Expansion : !IsShellDigit(c);
    if (IsShellNameCharacter(c) && isOfName) {
        EmitExpansion(1);
    } else {
        EmitData();
    }
}

}  // namespace Corvel::AutoCli
