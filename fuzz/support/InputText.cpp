#include "fuzz/support/InputText.h"

#include <algorithm>
#include <cstdlib>

namespace Corvel::Fuzz {

std::string ToText(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

std::vector<std::string> SplitSections(std::string_view text, std::size_t atLeast) {
    constexpr std::string_view kBorder = "\n%%\n";
    std::vector<std::string> sections;
    for (std::size_t end = text.find(kBorder); end != std::string_view::npos;
         end = text.find(kBorder)) {
        sections.emplace_back(text.substr(0, end));
        text.remove_prefix(end + kBorder.size());
    }
    sections.emplace_back(text);
    sections.resize(std::max(sections.size(), atLeast));
    return sections;
}

std::vector<std::string> SplitLines(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::pair<std::string, std::string> SplitPair(std::string_view text) {
    const std::size_t end = std::min(text.find('='), text.size());
    return {std::string(text.substr(0, end)),
            std::string(text.substr(std::min(end + 1, text.size())))};
}

std::string FromCarets(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '^' && i + 1 < text.size()) {
            decoded += static_cast<char>(text[++i] ^ '@');
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

long ToNumber(const std::string& text, long lowest, long highest) {
    return std::clamp(std::strtol(text.c_str(), nullptr, 10), lowest, highest);
}

}  // namespace Corvel::Fuzz
