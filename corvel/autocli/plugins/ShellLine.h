#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Corvel::AutoCli {

/// What the shell does with one byte of a command line.
enum class ShellRole : std::uint8_t {
    Data,          // part of a word, as it stands
    Blank,         // parts words
    Operator,      // ; & | ( ) < > and the newline: the first byte of one
    OperatorTail,  // the others of ;; && << and the like
    Quote,         // begins or ends '..' or "..", or ends a here-document
    Escape,        // a backslash that makes the byte behind it data
    Continuation,  // a backslash and a newline, which both disappear
    Expansion,     // the marks of $name, ${..}, $(..), $((..)) and `..`, and names of variables
    Tilde,         // may become somebody's home directory
    Comment,
};

/// What a word is to the command it stands in.
enum class ShellPlace : std::uint8_t {
    None,     // no word
    Command,  // names what runs
    Argument,
    Assignment,  // before a command, or behind export and its like
    Reserved,    // if, do, {, !, esac ...
    Name,        // of a loop's variable or of a function
    CaseWord,    // what case compares
    Pattern,     // what it is compared with
    Target,      // of < or >
    Descriptor,  // the number before them
    Delimiter,   // of a here-document
    Operand,     // of a command that runs another: in "timeout 5 ls", the 5
};

struct ShellByte {
    static constexpr std::uint32_t kNoWord = UINT32_MAX;

    ShellRole role = ShellRole::Data;
    /// Inside an expansion or a here-document, or where shells read the line differently.
    bool isDoubtful = false;
    /// Which of the line's words the byte belongs to. What stands in a $(..) has words of its own.
    std::uint32_t word = kNoWord;
};

struct ShellWord {
    static constexpr char kExpanded = '\0';

    ShellPlace place = ShellPlace::Argument;
    /// Which simple command it belongs to.
    std::uint32_t command = 0;
    /// Without quotes and backslashes, and with a kExpanded for each mark of an expansion.
    std::string text;
    /// Nothing in it was quoted or expanded: it can be a reserved word.
    bool isPlain = true;
    /// Nothing in it was expanded: the text is what the command gets.
    bool isKnown = true;
    /// It began as an assignment does.
    bool isAssignment = false;
    /// It holds a = or [ already: only what stands before the first of them can be a variable.
    bool hasLeftName = false;
    /// Some interpreter reads it as code once more: behind eval, sh -c and the like.
    bool isCode = false;
    /// The same, if its command runs the command that stands among its arguments.
    bool mayBeCode = false;
};

/// Some simple commands of a line, in the order in which they begin: from one up to another.
struct ShellCommands {
    std::uint32_t begin = 0;
    /// Behind the last one.
    std::uint32_t end = 0;

    bool operator==(const ShellCommands&) const = default;
    bool IsEmpty() const { return begin == end; }
};

/// A command line as the shells read it, byte by byte.
struct ShellLine {
    std::vector<ShellByte> bytes;
    /// In the order of their first bytes.
    std::vector<ShellWord> words;
    /// For each simple command those before it whose output it reads through a pipe.
    std::vector<ShellCommands> feeders;
    /// Some command may stand for others.
    bool hasFunctions = false;
};

}  // namespace Corvel::AutoCli
