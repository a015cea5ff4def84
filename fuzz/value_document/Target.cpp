// A value document, read and printed. Whatever the text is: the reader answers with a value, with no
// value, or with a CorvelException; and the value prints in every format, as XML that the same
// parser accepts.

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>

#include "corvel/corvel.h"
#include "fuzz/FuzzTarget.h"

namespace {

using namespace Corvel;

std::shared_ptr<MetaObj::MetaObject> Read(const std::string& text) {
    try {
        return AutoCli::XmlUtil_ParseXmlOutput(text);
    } catch (const CorvelException& exception) {
        Promise(*exception.what() != '\0', "a refusal says why");
        return nullptr;
    }
}

std::string Print(AutoCli::Formatter& formatter, const std::shared_ptr<CallSpec::Output>& output) {
    AutoCli::FormatParameters parameters;
    AutoCli::DisplayContext context{};
    std::ostringstream stream;
    Promise(formatter.Format(output, parameters, context, stream), "the value is printed");
    return stream.str();
}

// The printed document has other element names than the reader knows: it is refused for them, which
// proves that it was parsed.
bool IsWellFormed(const std::string& document) {
    try {
        AutoCli::XmlUtil_ParseXmlOutput(document);
    } catch (const CorvelException& exception) {
        return std::string(exception.what()).find("'meta-data'") != std::string::npos;
    }
    return false;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto value = Read(std::string(reinterpret_cast<const char*>(data), size));
    if (!value) {
        return 0;
    }
    Promise(value->IsSameStructure(value), "a value has its own shape");
    auto output = CallSpec::Output::New();
    output->SetRootObject(value);
    AutoCli::XmlFormatter xml;
    AutoCli::JsonFormatter json;
    AutoCli::PythonFormatter python;
    AutoCli::SimpleFormatter simple;
    Print(json, output);
    Print(python, output);
    Print(simple, output);
    // What is printed is one level deeper than what was read, and the parser has a limit.
    if (std::count(data, data + size, '<') < 200) {
        Promise(IsWellFormed(Print(xml, output)), "printed XML is well-formed");
    }
    return 0;
}
