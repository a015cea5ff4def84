#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <vector>

#include "corvel/autocli/plugins/ShellGrammar.h"
#include "corvel/autocli/plugins/ShellLine.h"

namespace Corvel::AutoCli {

/// A here-document whose body comes after the next newline.
struct ShellHereDocument {
    std::string delimiter;
    bool isQuoted;
    bool dropsTabs;
};

/// Several commands that count as one, and what held before them.
struct ShellCompound {
    std::uint32_t pipeBegin;
    ShellCommands input;
};

/// One construct of the shell that is open where the line is being read.
struct ShellFrame {
    enum class Kind : std::uint8_t {
        Commands,      // the line itself
        Group,         // ( .. )
        Substitution,  // $( .. )
        Backquotes,
        DoubleQuotes,
        Parameter,   // ${ .. }
        Arithmetic,  // $(( .. ))
        Document,    // the body of a here-document
    };
    /// How far a ${..} has been read: where its word begins, quotes and values may stand.
    enum class Part : std::uint8_t { Name, Word };

    bool HoldsCommands() const { return kind <= Kind::Backquotes; }
    bool AwaitsDocument() const { return !announced.empty(); }
    bool IsExpansion() const { return kind >= Kind::Substitution && kind != Kind::DoubleQuotes; }

    Kind kind;
    /// The frame whose word the bytes of this one belong to: itself when it holds commands.
    std::size_t owner;

    // Of a frame that holds commands:
    ShellGrammar grammar = {};
    std::uint32_t word = ShellByte::kNoWord;
    std::uint32_t command = 0;
    /// The first command of what a pipe behind would read from.
    std::uint32_t pipeBegin = 0;
    /// What its commands read from that stand behind no pipe of their own.
    ShellCommands input = {};
    /// The { .. }, if .. fi and the like that are open in it.
    std::vector<ShellCompound> compounds = {};
    /// Those that are still to be read. A list: groups hand theirs on, one to the next around it.
    std::list<ShellHereDocument> announced = {};
    bool isAtDocument = false;

    // Of the others:
    bool isInQuotes = false;
    Part part = Part::Name;
    std::size_t openParentheses = 0;
    std::size_t documentEnd = 0;
    std::size_t outerLimit = 0;
};

/// The place where a command line is being read: what is open there, which word, and what has been
/// said of the bytes before it. ShellQuoting and the lexer above it decide what is to be said.
class ShellScanner {
protected:
    using Kind = ShellFrame::Kind;

    explicit ShellScanner(std::string_view line);

    std::string_view Line() const { return _line; }
    std::size_t Position() const { return _position; }
    bool IsAtEnd() const { return _position >= _line.size(); }
    /// Where the body of the innermost here-document ends, or the line.
    bool IsAtLimit() const { return _position >= _limit; }
    std::size_t Limit() const { return _limit; }
    void SetLimit(std::size_t limit) { _limit = limit; }

    bool HasAhead(std::size_t ahead) const { return _position + ahead < _limit; }
    /// @return the byte so many positions ahead, NUL behind the limit.
    char Peek(std::size_t ahead = 0) const {
        return HasAhead(ahead) ? _line[_position + ahead] : '\0';
    }
    /// @return the byte before this one, which must not be the first.
    char Before() const { return _line[_position - 1]; }
    ShellByte& ReadBefore() { return _read.bytes[_position - 1]; }

    ShellFrame& Top() { return _frames.back(); }
    bool IsIn(Kind kind) const { return _frames.back().kind == kind; }
    bool IsInBackquotes() const { return _backquotes > 0; }
    bool IsInDocument() const { return _documents > 0; }
    std::size_t Depth() const { return _frames.size(); }
    void Push(Kind kind);
    void Pop();
    /// From here on the shells disagree, or may.
    void DoubtTheRest() { _isDoubtful = true; }

    void Emit(ShellRole role, std::size_t count = 1);
    void EmitOperator(std::size_t count = 1);
    /// Whether the byte before this one is an operator, or ends one.
    bool IsBehindOperator();
    /// Whether some shell makes one operator of the byte before this one and c.
    bool ContinuesOperator(char c);
    /// One byte that is part of a word as it stands.
    void EmitData();
    void EmitEscaped();
    /// Marks of an expansion, whose outcome the present word holds.
    void EmitExpansion(std::size_t count);
    /// Opens or closes a construct with so many bytes, which count as inside of it.
    void Open(Kind kind, std::size_t count);
    void Close(std::size_t count);

    /// @return the word that is open here, or null.
    ShellWord* Word();
    /// @return the word that is open here; a new one in a frame of commands when there is none.
    ShellWord& BeginWord();
    ShellWord& BeginQuotedWord();
    void EndWord();
    /// Ends the word as the number before a < or >.
    void EndDescriptor();
    void BeginCommand();
    /// Begins a command that reads the output of what stands before it.
    void BeginFedCommand();
    /// Begins the command behind a ( .. ), which may be the body of a function.
    void BeginCommandBehindGroup();

    void NoteFunction() { _read.hasFunctions = true; }
    ShellLine TakeReading() { return std::move(_read); }

private:
    ShellFrame& Owner() { return _frames[Top().owner]; }
    void BeginCommand(ShellCommands feeders);
    void FollowReserved(std::string_view word);
    void EndDelimiter(const ShellWord& word);

    const std::string_view _line;
    std::size_t _position = 0;
    std::size_t _limit;
    std::vector<ShellFrame> _frames;
    std::size_t _expansions = 0;
    std::size_t _backquotes = 0;
    std::size_t _documents = 0;
    bool _isDoubtful = false;
    ShellLine _read;
};

}  // namespace Corvel::AutoCli
