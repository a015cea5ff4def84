// A text as a name of everything that has one, and as text of doubtful encoding. Each rule says what a
// slow reference says, a node is hung in exactly when its name is one, and what is made printable is
// well-formed UTF-8 that stays as it is.

#include <algorithm>
#include <cstdlib>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "corvel/corvel.h"
#include "corvel/platform/Platform.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/names/Reference.h"
#include "fuzz/support/InputText.h"

namespace {

using namespace Corvel;
using namespace Corvel::Fuzz;

bool IsLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

void CheckStructName(const std::string& text) {
    const bool isName = !text.empty() && std::all_of(text.begin(), text.end(), IsLetterOrDigit);
    Promise(MetaObj::IsValidStructName(text) == isName, "a type name has letters and digits");
    Promise(MetaObj::IsValidFieldName(text), "every field name will do");
    std::string refusal;
    try {
        Promise(MetaObj::MetaStruct::New(text)->GetTypeName() == text, "a type name is kept");
    } catch (const CorvelException& exception) {
        refusal = exception.what();
    }
    const CorvelException expected("Invalid name specified for MetaStruct: " + text);
    Promise(refusal == (isName ? "" : expected.what()), "a bad type name is refused");
}

void CheckNodeName(const std::string& text) {
    Promise(AutoCli::AutoCli_IsValidName(text) == IsCamelCase(text),
            "a node's name is in camel case");
    auto root = AutoCli::RootNamespace::New(nullptr);
    auto node = AutoCli::Namespace::New();
    std::string refusal;
    try {
        root->RegisterNamespaceNode(node, text);
    } catch (const CorvelException& exception) {
        refusal = exception.what();
    }
    const CorvelException expected(
        "Invalid name for namespace '" + text +
        "', must be a name consisting of letters and numbers and must conform to 'camel' casing.");
    Promise(refusal == (IsCamelCase(text) ? "" : expected.what()), "a bad name is refused");
    Promise(root->HasNamespaceNode(text) == IsCamelCase(text), "a refused node is not hung in");
    if (IsCamelCase(text)) {
        Promise(node->GetPathString('.') == text, "a node has its path");
    }
}

std::string EscapedByPlatform(const std::string& text, long length) {
    char* escaped = Unicode_EscapeBuffer(text.c_str(), length, kUnicodeEncodingUtf8);
    Promise(escaped != nullptr, "there is a printable copy");
    std::string copy = escaped;
    std::free(escaped);
    return copy;
}

bool IsSound(const std::vector<Piece>& pieces) {
    return std::all_of(
        pieces.begin(), pieces.end(), [](const Piece& piece) { return piece.isCharacter; });
}

void CheckEncoding(const std::string& text) {
    const std::vector<Piece> pieces = SplitCharacters(text);
    const auto length = static_cast<long>(text.size());
    Promise(Unicode_IsBufferValid(text.data(), length, kUnicodeEncodingUtf8) == IsSound(pieces),
            "UTF-8 is what code points are written as");
    const std::string upToNul = text.c_str();
    const std::vector<Piece> shorter = SplitCharacters(upToNul);
    const bool isSoundUpToNul = IsSound(shorter);
    Promise(Unicode_IsBufferValid(text.c_str(), -1, kUnicodeEncodingUtf8) == isSoundUpToNul,
            "a text ends at its first NUL");
    const std::string expected = Escaped(shorter);
    const std::string escaped = EscapedByPlatform(text, -1);
    Promise(escaped == expected, "stray bytes are written in hexadecimal");
    Promise(EscapedByPlatform(escaped, -1) == escaped, "what is printable stays");

    std::string consumed = text;
    auto value = MetaObj::MetaString::NewUtf8WithEscapes(std::move(consumed));
    Promise(value->GetValue() == (isSoundUpToNul ? text : expected),
            "a text value is escaped where it must be");
}

void CheckPath(const std::string& text) {
    std::list<std::string> expected;
    std::string name;
    for (const char c : text) {
        if (c == '.') {
            expected.push_back(name);
            name.clear();
        } else {
            name += c;
        }
    }
    if (!name.empty()) {
        expected.push_back(name);
    }
    Promise(AutoCli::XmlPlugin::SplitPath(text) == expected, "a path is split at full stops");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = ToText(data, size);
    CheckStructName(text);
    CheckNodeName(text);
    CheckEncoding(text);
    CheckPath(text);
    Promise(AutoCli::PythonFormatter::IsAllAscii(text) ==
                std::none_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; }),
            "ASCII is below 128");
    return 0;
}
