#include "corvel/autocli/formatters/XmlFormatter.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "corvel/autocli/formatters/EscapeScan.h"
#include "corvel/autocli/formatters/EscapeTable.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/LeadCache.h"
#include "corvel/autocli/formatters/OutputBuffer.h"
#include "corvel/autocli/formatters/OutputRoot.h"
#include "corvel/autocli/formatters/ScalarText.h"
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
/// How much deeper a nested value stands than its structure or list.
constexpr int kNestedLevels = 2;

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

bool HasElement(const ValueView& value) {
    return value.kind != ValueKind::Null && value.kind != ValueKind::Mismatch;
}

class XmlWriter {
public:
    XmlWriter(TextBuffer& out, int level) : _out(out), _level(level) {}

    void Scalar(const ValueView& value) {
        if (HasElement(value)) {
            AppendOpening(_out, value.type, _level);
            _out.EndAt(PutContent(_out.Room(kScalarRoom), value));
            AppendClosing(_out, value.type);
        } else if (value.kind == ValueKind::Mismatch) {
            Mismatch(value.type);
        }
    }

    void OpenStruct(const MetaStruct& structure) {
        AppendIndent(_out, _level);
        _out += "<structure typeName=\"";
        AppendEscaped<kEscapes>(_out, structure.GetTypeName());
        _out += "\">\n";
    }
    void Field(const FieldPlace& field, const ValueView& value) {
        if (!HasElement(value)) {
            BeginField(field);
            Scalar(value);
            EndField(field.isLast);
            return;
        }
        const std::string_view lead = Lead(field, value.type);
        char* const at = PutBlocks(_out.Room(lead.size() + kScalarRoom), lead);
        _out.EndAt(PutContent(at, value));
        const std::string_view end = End(value.type);
        _out.EndAt(PutBlocks(_out.Room(end.size()), end));
    }
    void BeginField(const FieldPlace& field) {
        AppendFieldOpening(_out, field.name);
        _level += kNestedLevels;
    }
    void EndField(bool /*last*/) {
        _level -= kNestedLevels;
        AppendFieldClosing(_out);
    }
    void CloseStruct() {
        AppendIndent(_out, _level);
        _out += "</structure>\n";
    }

    void OpenList(const MetaList& list) {
        AppendIndent(_out, _level);
        _out += "<list type=\"";
        _out += TypeWord(list.GetListType());
        _out += "\">\n";
    }
    void BeginItem() { _level += kNestedLevels; }
    void EndItem(bool /*last*/) { _level -= kNestedLevels; }
    void CloseList() {
        AppendIndent(_out, _level);
        _out += "</list>\n";
    }

private:
    /// More than there are types.
    static constexpr int kVariants = 8;

    /// What stands before a scalar.
    std::string_view Lead(const FieldPlace& field, MetaType type) {
        const int variant = _level * kVariants + static_cast<int>(type);
        return _leads.Get(field.place, variant, &field.name, [&](TextBuffer& lead) {
            AppendFieldOpening(lead, field.name);
            AppendOpening(lead, type, _level + kNestedLevels);
        });
    }
    /// What stands behind it.
    std::string_view End(MetaType type) {
        const auto place = static_cast<std::size_t>(type);
        return _ends.Get(place, _level * kVariants, TypeWord(type).data(), [&](TextBuffer& end) {
            AppendClosing(end, type);
            AppendFieldClosing(end);
        });
    }

    static void AppendOpening(TextBuffer& out, MetaType type, int level) {
        AppendIndent(out, level);
        out += '<';
        out += TypeWord(type);
        out += '>';
    }
    static void AppendClosing(TextBuffer& out, MetaType type) {
        out += "</";
        out += TypeWord(type);
        out += ">\n";
    }
    void AppendFieldOpening(TextBuffer& out, const std::string& name) const {
        AppendIndent(out, _level);
        out += "   <field name=\"";
        AppendEscaped<kEscapes>(out, name);
        out += "\">\n";
    }
    void AppendFieldClosing(TextBuffer& out) const {
        AppendIndent(out, _level);
        out += "   </field>\n";
    }

    char* PutContent(char* at, const ValueView& value) {
        switch (value.kind) {
            case ValueKind::Bool:
                return PutBool(at, value.boolean, "true", "false");
            case ValueKind::Int:
                return PutDecimal(at, value.integer);
            case ValueKind::String:
                return PutText<kEscapes>(_out, at, value.text);
            default:  // null, mismatch, structures and lists never come here
                return at;
        }
    }

    void Mismatch(MetaType type) {
        if (type == MetaType::Bool) {
            _out += "<!-- Error reading a bool -->\n";
            return;
        }
        // Deliberate: these make the document ill-formed, so that no reader takes it for whole.
        _out +=
            MismatchText(type, "Error Only simple int, bool, string and struct output supported");
        _out += '\n';
    }

    TextBuffer& _out;
    int _level;
    LeadCache _leads;
    LeadCache _ends;
};

void WriteStylesheet(const FormatParameters& parameters, TextBuffer& out) {
    if (parameters.HasParameter("stylesheet")) {
        out += "<?xml-stylesheet type=\"text/xsl\" href=\"";
        out += parameters.GetParameter("stylesheet");
        out += "\"?>\n";
    }
}

void WriteMetaData(const FormatParameters& parameters, TextBuffer& out) {
    out += "   <meta-data>\n";
    for (const auto& [key, value] : parameters.GetParameters()) {
        out += "      <meta-data-field name=\"";
        AppendEscaped<kEscapes>(out, key);
        out += "\" value=\"";
        AppendEscaped<kEscapes>(out, value);
        out += "\"/>\n";
    }
    out += "   </meta-data>\n";
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
    OutputBuffer out(stream);
    out += "<?xml version=\"1.0\"?>\n";
    WriteStylesheet(parameters, out);
    out += "<output xmlns:quorcli=\"";
    out += kNamespaceAddress;
    out += "\">\n";
    WriteMetaData(parameters, out);
    out += "   <root>\n";
    WriteValue<XmlWriter>(OutputRoot(output).get(), out, kRootLevel);
    out += "   </root>\n</output>\n";
    out.Flush();
    return true;
}

void XmlFormatter::Format(const std::shared_ptr<MetaObject>& value,
                          std::ostream& stream,
                          int level) {
    OutputBuffer buffer(stream);
    WriteValue<XmlWriter>(value.get(), buffer, level);
    buffer.Flush();
}

std::string SantizeString(const std::string& text) {
    TextBuffer escaped;
    AppendEscaped<kEscapes>(escaped, text);
    return std::string(escaped.View());
}

std::string SantizeString(const char* text) {
    return SantizeString(std::string(text == nullptr ? "" : text));
}

}  // namespace Corvel::AutoCli
