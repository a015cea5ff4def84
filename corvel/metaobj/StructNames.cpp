#include "corvel/metaobj/StructNames.h"

#include <algorithm>

#include "corvel/metaobj/NullText.h"

namespace Corvel::MetaObj {

namespace {

// Not isalnum: the locale has no say here.
bool IsLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

}  // namespace

bool IsValidStructName(const std::string& name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), IsLetterOrDigit);
}

bool IsValidStructName(const char* name) {
    return IsValidStructName(std::string(TextOrEmpty(name)));
}

bool IsValidFieldName(const std::string& /*name*/) {
    return true;
}

bool IsValidFieldName(const char* name) {
    return IsValidFieldName(std::string(TextOrEmpty(name)));
}

}  // namespace Corvel::MetaObj
