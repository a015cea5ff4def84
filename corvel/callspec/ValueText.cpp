#include "corvel/callspec/ValueText.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace Corvel::CallSpec {

namespace {

constexpr std::array<std::string_view, 7> kTrueWords = {"1", "yes", "y", "true", "True", "t", "T"};

}  // namespace

bool ReadInteger(const std::string& text, long& value) {
    if (text.empty()) {
        return false;
    }
    char* end = nullptr;
    const long long number = std::strtoll(text.c_str(), &end, 10);
    // The end of the text, not the first NUL in it, is where the number must end.
    if (end == text.c_str() || end != text.c_str() + text.size()) {
        return false;
    }
    value = static_cast<long>(number);
    return true;
}

bool IsTrueWord(const std::string& text) {
    return std::find(kTrueWords.begin(), kTrueWords.end(), text) != kTrueWords.end();
}

}  // namespace Corvel::CallSpec
