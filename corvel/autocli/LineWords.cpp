#include "corvel/autocli/LineWords.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace Corvel::AutoCli {

namespace {

constexpr std::string_view kBlanks = " \t";

bool IsComment(const std::string& line) {
    const std::size_t first = line.find_first_not_of(kBlanks);
    return first != std::string::npos && line[first] == '#';
}

/// The word that a stretch of a line stands for.
std::string WithoutQuotes(std::string text) {
    std::erase(text, '"');
    return text;
}

}  // namespace

std::vector<std::string> SplitLine(const std::string& line) {
    std::vector<std::string> words;
    if (IsComment(line)) {
        return words;
    }
    std::size_t start = 0;
    bool inWord = false;
    bool inQuotes = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"') {
            inQuotes = !inQuotes;
        } else if (kBlanks.find(line[i]) == std::string_view::npos) {
            inWord = true;
        } else if (!inWord) {
            start = i + 1;
        } else if (!inQuotes) {
            words.push_back(WithoutQuotes(line.substr(start, i - start)));
            start = std::min(line.find_first_not_of(kBlanks, i), line.size());
            i = start - 1;
        }
    }
    std::string last = WithoutQuotes(line.substr(start));
    if (!last.empty()) {
        words.push_back(std::move(last));
    }
    return words;
}

}  // namespace Corvel::AutoCli
