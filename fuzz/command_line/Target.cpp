// A command line, split and taken apart. Every word ends in the path, in an option or its value, or
// in an error; and a line that is split again from its words gives the same words.

#include <algorithm>
#include <string>
#include <vector>

#include "corvel/corvel.h"
#include "fuzz/FuzzTarget.h"

namespace {

using Corvel::AutoCli::OptionParser;

bool IsPlain(const std::string& word) {
    return !word.empty() && word[0] != '#' && word.find_first_of(" \t\"") == std::string::npos;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string line(reinterpret_cast<const char*>(data), size);
    OptionParser parser;
    const bool nothing = parser.ParseString(line);
    parser.ProcessCommandArguments();
    Promise(
        !nothing || (parser.GetCommandPath().empty() && parser.GetDispatcherParameters().empty()),
        "nothing comes of an empty line");

    const auto& path = parser.GetCommandPath();
    for (const auto& [name, value] : parser.GetDispatcherParameters()) {
        Promise(OptionParser::IsParameter((name.size() == 1 ? "-" : "--") + name),
                "an option's name makes an option");
    }
    Promise(parser.GetCommandParameters().empty() || !path.empty(),
            "options of the command follow a path");
    for (const std::string& word : path) {
        Promise(!OptionParser::IsParameter(word), "no option stands in the path");
    }
    if (std::all_of(path.begin(), path.end(), IsPlain) && !path.empty()) {
        std::string again;
        for (const std::string& word : path) {
            again += word + ' ';
        }
        OptionParser second;
        second.ParseString(again);
        Promise(second.GetCommandPath() == path, "plain words are split at blanks");
    }
    Promise(parser.ToString().find("Parsed: 0") == 0, "the description begins as it does");
    return 0;
}
