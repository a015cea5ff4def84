#include "ProcFile.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace HostInfo {

namespace {

std::string Trim(const std::string& text) {
    const char* const blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace

std::string ReadProcFile(const std::string& path) {
    std::ifstream file(path);
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (text.empty()) {
        throw std::runtime_error("Unable to read " + path);
    }
    return text;
}

std::vector<std::pair<std::string, std::string>> ReadKeyValues(const std::string& text) {
    std::vector<std::pair<std::string, std::string>> pairs;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t colon = line.find(':');
        std::string value = colon == std::string::npos ? std::string() : line.substr(colon + 1);
        pairs.emplace_back(Trim(line.substr(0, colon)), Trim(value));
    }
    return pairs;
}

}  // namespace HostInfo
