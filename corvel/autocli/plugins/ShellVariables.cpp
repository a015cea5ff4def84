#include "corvel/autocli/plugins/ShellVariables.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace Corvel::AutoCli {

namespace {

constexpr auto kCodeVariables = std::to_array<std::string_view>({
    "BASHPID", "BASH_ENV", "COLUMNS", "ENV",   "HISTCMD",    "KSHEGID", "KSHGID",
    "KSHUID",  "LINES",    "OPTIND",  "PGRP",  "PIPESTATUS", "PPID",    "PS4",
    "RANDOM",  "SECONDS",  "SRANDOM", "TMOUT", "USER_ID",
});

bool IsCodeVariable(std::string_view name) {
    return std::find(kCodeVariables.begin(), kCodeVariables.end(), name) != kCodeVariables.end();
}

}  // namespace

bool AssignsCode(std::string_view assignment) {
    const std::size_t end = assignment.find_first_of("=[");
    if (end == std::string_view::npos) {
        return false;
    }
    std::string_view name = assignment.substr(0, end);
    if (name.ends_with('+')) {
        name.remove_suffix(1);
    }
    return IsCodeVariable(name);
}

void MarkAssignedCode(ShellLine& line, bool everyVariable) {
    bool isLoopOverCode = false;
    /// For each command whether its words are what such a variable gets in turn.
    std::vector<bool> listsCode(line.feeders.size(), false);
    for (ShellWord& word : line.words) {
        switch (word.place) {
            case ShellPlace::Assignment:
                word.isCode |= everyVariable || AssignsCode(word.text);
                break;
            case ShellPlace::Name:
                isLoopOverCode = everyVariable || IsCodeVariable(word.text);
                break;
            case ShellPlace::Reserved:
                listsCode[word.command] = std::exchange(isLoopOverCode, false) && word.text == "in";
                break;
            case ShellPlace::Argument:
                word.isCode |= listsCode[word.command];
                break;
            default:
                break;
        }
    }
}

}  // namespace Corvel::AutoCli
