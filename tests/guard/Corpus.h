#pragma once

#include <string>
#include <vector>

namespace Corvel::Testing {

/// The parameters that the templates here name: two with one value, one with several.
inline const std::string kFirst = "aa";
inline const std::string kSecond = "bb";
inline const std::string kList = "ll";

struct GuardedTemplate {
    std::string text;
    /// The template itself makes the value a command, or code.
    bool runsValue = false;
    /// Each of its lines takes a shell long: it needs processes, looks for files, or ends the shell.
    bool isSlow = false;
};

/// Each kind of token in each position of the shell's grammar.
const std::vector<GuardedTemplate>& Corpus();

}  // namespace Corvel::Testing
