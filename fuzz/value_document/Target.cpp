// A value document. Whatever the text is: the reader answers with the value, with no value or with
// the refusal that a plain walk over libxml2's tree answers with. The value prints in every format,
// and as XML, put into the words that the reader knows, it is read again as the same value.

#include <algorithm>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "corvel/corvel.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/support/InputText.h"
#include "fuzz/support/ValueDump.h"
#include "fuzz/support/ValueTree.h"

namespace {

using namespace Corvel;
using namespace Corvel::Fuzz;
using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using Value = std::shared_ptr<MetaObject>;

/// What reading came to: the value, and in words what it is or why there is none.
struct Reading {
    Value value = {};
    std::string words = {};
};

Reading Read(Value (*read)(const std::string&), const std::string& text) {
    Reading reading;
    try {
        reading.value = read(text);
        reading.words = DumpValue(reading.value, TypeNames::Shown);
    } catch (const CorvelException& exception) {
        reading.words = exception.what();
    }
    return reading;
}

void CheckListStructures(const Value& value) {
    if (const auto* structure = dynamic_cast<const MetaStruct*>(value.get())) {
        for (const std::string& name : structure->GetFieldNames()) {
            CheckListStructures(structure->GetField(name));
        }
    } else if (const auto* list = dynamic_cast<const MetaList*>(value.get())) {
        const bool hasStructures =
            list->GetListType() == MetaObj::MetaType::Struct && list->GetCount() > 0;
        Promise(list->GetListStructure() == (hasStructures ? list->GetItem(0) : nullptr),
                "a list's first structure is its list structure");
        for (const Value& item : list->GetObjects()) {
            CheckListStructures(item);
        }
    }
}

std::string Print(AutoCli::Formatter& formatter, const Value& value) {
    auto output = CallSpec::Output::New();
    output->SetRootObject(value);
    AutoCli::FormatParameters parameters;
    AutoCli::DisplayContext context{};
    std::ostringstream stream;
    Promise(formatter.Format(output, parameters, context, stream), "the value is printed");
    return stream.str();
}

void ReplaceAll(std::string& text, const std::string& old, const std::string& replacement) {
    for (std::size_t at = text.find(old); at != std::string::npos;
         at = text.find(old, at + replacement.size())) {
        text.replace(at, old.size(), replacement);
    }
}

/// The value of a printed document in the words of those that are read. Nothing but markup changes:
/// printed texts hold no "<" and no double quote.
std::string ToReadable(const std::string& printed) {
    const std::size_t begin = printed.find("<root>");
    std::string text = printed.substr(begin, printed.rfind("</root>") - begin) + "</root>";
    for (const auto& [word, readable] : {std::pair<std::string, std::string>("integer", "int"),
                                         std::pair<std::string, std::string>("boolean", "bool")}) {
        ReplaceAll(text, "<" + word + ">", "<" + readable + ">");
        ReplaceAll(text, "</" + word + ">", "</" + readable + ">");
        ReplaceAll(text, "<list type=\"" + word + "\">", "<list type=\"" + readable + "\">");
    }
    return text;
}

/// XML has blanks for line ends and tabs in attributes, and a line feed for every other line end.
bool SurvivesXml(const Value& value) {
    if (const auto* structure = dynamic_cast<const MetaStruct*>(value.get())) {
        const std::list<std::string> names = structure->GetFieldNames();
        return std::all_of(names.begin(), names.end(), [&](const std::string& name) {
            return name.find_first_of("\t\n\r") == std::string::npos &&
                   SurvivesXml(structure->GetField(name));
        });
    }
    if (const auto* list = dynamic_cast<const MetaList*>(value.get())) {
        const auto& items = list->GetObjects();
        return std::all_of(items.begin(), items.end(), SurvivesXml);
    }
    return value->ToString().find('\r') == std::string::npos;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = ToText(data, size);
    const Reading reading = Read(AutoCli::XmlUtil_ParseXmlOutput, text);
    Promise(reading.words == Read(ReadByTree, text).words, "the value is that of the tree");
    const Value& value = reading.value;
    if (value == nullptr) {
        return 0;
    }
    Promise(value->IsSameStructure(value), "a value has its own shape");
    CheckListStructures(value);
    AutoCli::JsonFormatter json;
    AutoCli::PythonFormatter python;
    AutoCli::SimpleFormatter simple;
    AutoCli::XmlFormatter xml;
    Print(json, value);
    Print(python, value);
    Print(simple, value);
    const std::string printed = Print(xml, value);
    // What is printed is one level deeper than what was read, and the parser has a limit.
    if (std::count(data, data + size, '<') < 200 && SurvivesXml(value)) {
        Promise(Read(AutoCli::XmlUtil_ParseXmlOutput, ToReadable(printed)).words == reading.words,
                "what is printed as XML is read as the same value");
    }
    return 0;
}
