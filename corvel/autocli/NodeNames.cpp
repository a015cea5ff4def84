#include "corvel/autocli/NodeNames.h"

#include <algorithm>
#include <utility>

#include "corvel/metaobj/NullText.h"

namespace Corvel::AutoCli {

namespace {

bool IsUpperCase(char c) {
    return c >= 'A' && c <= 'Z';
}

bool IsLowerCaseOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

}  // namespace

bool AutoCli_IsValidName(const char* name) {
    return AutoCli_IsValidName(std::string(MetaObj::TextOrEmpty(name)));
}

bool AutoCli_IsValidName(const std::string& name) {
    bool mayBeUpperCase = false;
    const auto fits = [&mayBeUpperCase](char c) {
        if (IsUpperCase(c)) {
            return std::exchange(mayBeUpperCase, false);
        }
        mayBeUpperCase = true;
        return IsLowerCaseOrDigit(c);
    };
    return !name.empty() && std::all_of(name.begin(), name.end(), fits);
}

}  // namespace Corvel::AutoCli
