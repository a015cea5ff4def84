// The references for the formats that programs read.

#include <cstdio>
#include <string_view>

#include "fuzz/formatters/Reference.h"
#include "fuzz/support/ValueDump.h"

namespace Corvel::Fuzz {

using MetaObj::MetaList;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

namespace {

std::string Indent(int level) {
    return AutoCli::GetIndent(level);
}

const MetaStruct& AsStructure(const Value& value) {
    return dynamic_cast<const MetaStruct&>(*value);
}

const MetaList& AsList(const Value& value) {
    return dynamic_cast<const MetaList&>(*value);
}

std::string ReplaceEach(const std::string& text, char old, const std::string& replacement) {
    std::string replaced;
    for (const char c : text) {
        replaced += c == old ? replacement : std::string(1, c);
    }
    return replaced;
}

std::string JsonCharacter(char c) {
    constexpr std::string_view kPlain = "\"\\/\b\t\n\f\r";
    constexpr std::string_view kLetters = "\"\\/btnfr";
    const std::size_t at = kPlain.find(c);
    if (at != std::string_view::npos) {
        return {'\\', kLetters[at]};
    }
    const auto byte = static_cast<unsigned char>(c);
    return byte < 32 || byte > 126 ? "\\u00" + ToHex({&c, 1}) : std::string(1, c);
}

std::string JsonText(const std::string& text) {
    std::string written = "\"";
    for (const char c : text) {
        written += JsonCharacter(c);
    }
    return written + "\"";
}

std::string Json(const Value& value, int level) {
    const std::string indent = Indent(level);
    if (value == nullptr) {
        return "null";
    }
    if (value->GetType() == MetaType::String) {
        return JsonText(value->ToString());
    }
    std::string text = "\n" + indent;
    std::string separator;
    if (value->GetType() == MetaType::Struct) {
        text += "{\n";
        for (const std::string& name : AsStructure(value).GetFieldNames()) {
            text += separator + indent + "   \"" + name +
                    "\": " + Json(AsStructure(value).GetField(name), level + 2);
            separator = ",\n";
        }
        return text + (separator.empty() ? "" : "\n") + indent + "}";
    }
    if (value->GetType() == MetaType::List) {
        text += "[\n";
        for (const Value& item : AsList(value).GetObjects()) {
            text += separator + indent + Json(item, level + 3);
            separator = ", \n";
        }
        return text + (separator.empty() ? "" : "\n") + indent + "]";
    }
    return value->ToString();
}

std::string PythonText(const std::string& text) {
    return "\"\"\"" + ReplaceEach(ReplaceEach(text, '"', "\\\""), '\n', "\\n") + "\"\"\"";
}

std::string Python(const Value& value) {
    std::string text;
    switch (value->GetType()) {
        case MetaType::Bool:
            return value->ToString() == "true" ? "True" : "False";
        case MetaType::Int:
            return value->ToString();
        case MetaType::String:
            return PythonText(value->ToString());
        case MetaType::Struct:
            for (const std::string& name : AsStructure(value).GetFieldNames()) {
                text += "\"" + name + "\": " + Python(AsStructure(value).GetField(name)) + ", ";
            }
            return "{" + text + "}";
        case MetaType::List:
            for (const Value& item : AsList(value).GetObjects()) {
                text += Python(item) + ", ";
            }
            return "[" + text + "]";
    }
    return "Unknown data type\n";
}

std::string XmlText(std::string text) {
    text = ReplaceEach(text, '&', "&amp;");
    text = ReplaceEach(text, '<', "&lt;");
    text = ReplaceEach(text, '>', "&gt;");
    text = ReplaceEach(text, '%', "&#37;");
    text = ReplaceEach(text, '"', "&quot;");
    return ReplaceEach(text, '\'', "&apos;");
}

std::string Xml(const Value& value, int level) {
    const std::string indent = Indent(level);
    std::string text;
    if (value == nullptr) {
        return "";
    }
    switch (value->GetType()) {
        case MetaType::Bool:
            return indent + "<boolean>" + value->ToString() + "</boolean>\n";
        case MetaType::Int:
            return indent + "<integer>" + value->ToString() + "</integer>\n";
        case MetaType::String:
            return indent + "<string>" + XmlText(value->ToString()) + "</string>\n";
        case MetaType::Struct:
            text = indent + "<structure typeName=\"" + XmlText(AsStructure(value).GetTypeName()) +
                   "\">\n";
            for (const std::string& name : AsStructure(value).GetFieldNames()) {
                text += indent + "   <field name=\"" + XmlText(name) + "\">\n" +
                        Xml(AsStructure(value).GetField(name), level + 2) + indent +
                        "   </field>\n";
            }
            return text + indent + "</structure>\n";
        case MetaType::List:
            text = indent + "<list type=\"" + std::string(ListWord(AsList(value).GetListType())) +
                   "\">\n";
            for (const Value& item : AsList(value).GetObjects()) {
                text += Xml(item, level + 2);
            }
            return text + indent + "</list>\n";
    }
    return "";
}

}  // namespace

std::string PrintJson(const Value& value) {
    return Json(value, -1) + "\n";
}

std::string PrintPython(const Value& value) {
    if (value == nullptr) {
        throw CorvelException("Invalid MetaObject passed to Format in PythonFormatter");
    }
    return Python(value) + "\n";
}

std::string PrintXml(const Value& value, const AutoCli::FormatParameters& parameters) {
    std::string text = "<?xml version=\"1.0\"?>\n";
    if (parameters.HasParameter("stylesheet")) {
        text += "<?xml-stylesheet type=\"text/xsl\" href=\"" +
                parameters.GetParameter("stylesheet") + "\"?>\n";
    }
    text += "<output xmlns:quorcli=\"http://corvel.example/Products/QUOR/5.0/quorcli\">\n";
    text += "   <meta-data>\n";
    for (const auto& [key, setting] : parameters.GetParameters()) {
        text += "      <meta-data-field name=\"" + XmlText(key) + "\" value=\"" + XmlText(setting) +
                "\"/>\n";
    }
    return text + "   </meta-data>\n   <root>\n" + Xml(value, 2) + "   </root>\n</output>\n";
}

}  // namespace Corvel::Fuzz
