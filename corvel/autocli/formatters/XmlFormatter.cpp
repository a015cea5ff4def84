#include "corvel/autocli/formatters/XmlFormatter.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "corvel/autocli/formatters/EscapeTable.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/OutputBuffer.h"
#include "corvel/autocli/formatters/OutputRoot.h"
#include "corvel/autocli/formatters/TextRendering.h"
#include "corvel/autocli/formatters/ValueWalk.h"

namespace Corvel::AutoCli {

using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using MetaObj::MetaType;
using MetaObj::ValueKind;
using MetaObj::ValueView;

namespace {

constexpr std::string_view kNamespaceAddress = "http://corvel.example/Products/QUOR/5.0/quorcli";
constexpr int kRootLevel = 2;

constexpr EscapeTable kEscapes{
    {'&', "&amp;"},
    {'<', "&lt;"},
    {'>', "&gt;"},
    // Deliberate: harmless in XML, but no percent sign is to occur in a document.
    {'%', "&#37;"},
    {'"', "&quot;"},
    {'\'', "&apos;"},
};

std::string_view TypeWord(MetaType type) {
    static constexpr std::array<std::string_view, 5> kWords{
        "integer", "boolean", "string", "structure", "list"};
    return kWords.at(static_cast<std::size_t>(type));
}

class XmlWriter {
public:
    XmlWriter(std::string& out, int level) : _out(out), _level(level) {}

    void Scalar(const ValueView& value) {
        switch (value.kind) {
            case ValueKind::Bool:
                Line(value.boolean ? "<boolean>true</boolean>\n" : "<boolean>false</boolean>\n");
                break;
            case ValueKind::Int:
                Line("<integer>");
                AppendValue(_out, value);
                _out.append("</integer>\n");
                break;
            case ValueKind::String:
                Line("<string>");
                kEscapes.AppendEscaped(_out, value.text);
                _out.append("</string>\n");
                break;
            case ValueKind::Mismatch:
                Mismatch(value.type);
                break;
            default:  // null: nothing; structures and lists never come here
                break;
        }
    }

    void OpenStruct(const MetaStruct& structure) {
        Line("<structure typeName=\"");
        kEscapes.AppendEscaped(_out, structure.GetTypeName());
        _out.append("\">\n");
    }
    void BeginField(const std::string& name) {
        Line("   <field name=\"");
        kEscapes.AppendEscaped(_out, name);
        _out.append("\">\n");
        _level += 2;
    }
    void EndField(bool /*last*/) {
        _level -= 2;
        Line("   </field>\n");
    }
    void CloseStruct() { Line("</structure>\n"); }

    void OpenList(const MetaList& list) {
        Line("<list type=\"");
        _out.append(TypeWord(list.GetListType()));
        _out.append("\">\n");
    }
    void BeginItem() { _level += 2; }
    void EndItem(bool /*last*/) { _level -= 2; }
    void CloseList() { Line("</list>\n"); }

private:
    void Line(std::string_view text) {
        AppendIndent(_out, _level);
        _out.append(text);
    }

    void Mismatch(MetaType type) {
        if (type == MetaType::Bool) {
            _out.append("<!-- Error reading a bool -->\n");
            return;
        }
        // Deliberate: these make the document ill-formed, so that no reader takes it for whole.
        _out.append(
            MismatchText(type, "Error Only simple int, bool, string and struct output supported"));
        _out.append("\n");
    }

    std::string& _out;
    int _level;
};

void WriteValue(const MetaObject* value, OutputBuffer& buffer, int level) {
    XmlWriter writer(buffer.Text(), level);
    ValueWalk(writer, buffer).Run(value);
}

void WriteStylesheet(const FormatParameters& parameters, std::string& out) {
    if (parameters.HasParameter("stylesheet")) {
        out.append("<?xml-stylesheet type=\"text/xsl\" href=\"");
        out.append(parameters.GetParameter("stylesheet"));
        out.append("\"?>\n");
    }
}

void WriteMetaData(const FormatParameters& parameters, std::string& out) {
    out.append("   <meta-data>\n");
    for (const auto& [key, value] : parameters.GetParameters()) {
        out.append("      <meta-data-field name=\"");
        kEscapes.AppendEscaped(out, key);
        out.append("\" value=\"");
        kEscapes.AppendEscaped(out, value);
        out.append("\"/>\n");
    }
    out.append("   </meta-data>\n");
}

}  // namespace

std::shared_ptr<XmlFormatter> XmlFormatter::New() {
    return std::make_shared<XmlFormatter>();
}

XmlFormatter::XmlFormatter() : Formatter("xml") {
    SetDescription(
        "Print an XML document to the screen representing the output for a given command");
    ReserveParams(1);
    AddParam("stylesheet", "The file name or URL to a stylesheet for this document.  ");
}

XmlFormatter::~XmlFormatter() = default;

bool XmlFormatter::Format(const std::shared_ptr<CallSpec::Output>& output,
                          FormatParameters& parameters,
                          DisplayContext& /*display*/,
                          std::ostream& stream) {
    OutputBuffer buffer(stream);
    std::string& out = buffer.Text();
    out.append("<?xml version=\"1.0\"?>\n");
    WriteStylesheet(parameters, out);
    out.append("<output xmlns:quorcli=\"");
    out.append(kNamespaceAddress);
    out.append("\">\n");
    WriteMetaData(parameters, out);
    out.append("   <root>\n");
    WriteValue(OutputRoot(output).get(), buffer, kRootLevel);
    out.append("   </root>\n</output>\n");
    buffer.Flush();
    return true;
}

void XmlFormatter::Format(const std::shared_ptr<MetaObject>& value,
                          std::ostream& stream,
                          int level) {
    OutputBuffer buffer(stream);
    WriteValue(value.get(), buffer, level);
    buffer.Flush();
}

std::string SantizeString(const std::string& text) {
    std::string escaped;
    kEscapes.AppendEscaped(escaped, text);
    return escaped;
}

std::string SantizeString(const char* text) {
    return SantizeString(std::string(text == nullptr ? "" : text));
}

}  // namespace Corvel::AutoCli
