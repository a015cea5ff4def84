#include "tests/autocli/plugins/ShellLexerCase.h"

#include <algorithm>
#include <cstddef>
#include <ostream>

#include "corvel/autocli/plugins/ShellLexer.h"

namespace Corvel::Testing {

using AutoCli::ReadShellLine;
using AutoCli::ShellByte;
using AutoCli::ShellLine;
using AutoCli::ShellPlace;

std::ostream& operator<<(std::ostream& stream, const ShellReading& reading) {
    std::string line = reading.line;
    std::replace(line.begin(), line.end(), '\n', '^');
    return stream << '\n'
                  << line << '\n'
                  << reading.roles << '\n'
                  << reading.places << '\n'
                  << reading.doubts;
}

namespace {

std::string WithoutBlanksAtTheEnd(std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

}  // namespace

ShellReading ReadingOf(const std::string& line) {
    const ShellLine read = ReadShellLine(line);
    ShellReading reading{line, {}, {}, {}};
    for (const ShellByte& byte : read.bytes) {
        const ShellPlace place =
            byte.word == ShellByte::kNoWord ? ShellPlace::None : read.words[byte.word].place;
        reading.roles += "w_;+qec$~#"[static_cast<std::size_t>(byte.role)];
        reading.places += " CA=RNWPTFD"[static_cast<std::size_t>(place)];
        reading.doubts += byte.isDoubtful ? '?' : ' ';
    }
    reading.places = WithoutBlanksAtTheEnd(reading.places);
    reading.doubts = WithoutBlanksAtTheEnd(reading.doubts);
    return reading;
}

}  // namespace Corvel::Testing
