#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include "corvel/autocli/plugins/XmlReader.h"
#include "corvel/autocli/plugins/XmlUtil.h"
#include "tests/autocli/plugins/ParsedXml.h"
#include "tests/autocli/plugins/RandomXml.h"
#include "tests/autocli/plugins/XmlNotes.h"
#include "tests/support/Repeat.h"

namespace Corvel::AutoCli {
namespace {

using Testing::ParsedXml;
using Testing::RandomXml;
using Testing::Repeat;
using Notes = Testing::XmlNotes;

/// The tree that libxml2 builds of a text is what the events are held against.
ParsedXml ParseTree(const std::string& text) {
    constexpr int kQuiet = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    xmlSetStructuredErrorFunc(nullptr, [](void*, auto*) {});
    ParsedXml tree(text, kQuiet);
    xmlSetStructuredErrorFunc(nullptr, nullptr);
    return tree;
}

constexpr std::array<const char*, 5> kAttributeNames = {"a", "b", "c", "q:a", "xmlns"};

void WalkTree(const xmlNode* node, XmlHandler& handler) {
    for (; node != nullptr; node = node->next) {
        if (node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE) {
            handler.Text(reinterpret_cast<const char*>(node->content));
        } else if (node->type == XML_ELEMENT_NODE) {
            std::array<std::string, kAttributeNames.size()> values;
            std::array<XmlAttribute, kAttributeNames.size()> attributes;
            for (std::size_t i = 0; i < values.size(); ++i) {
                values[i] =
                    XmlUtil_ExtractAttribute(const_cast<xmlNode*>(node), kAttributeNames[i]);
                attributes[i] = {kAttributeNames[i], values[i]};
            }
            handler.StartElement(reinterpret_cast<const char*>(node->name),
                                 XmlAttributes(attributes));
            WalkTree(node->children, handler);
            handler.EndElement();
        }
    }
}

/// Writes down of the attributes what Find() says of the names that occur.
class FoundNotes : public Notes {
public:
    void StartElement(std::string_view name, const XmlAttributes& attributes) override {
        std::array<XmlAttribute, kAttributeNames.size()> found;
        for (std::size_t i = 0; i < found.size(); ++i) {
            found[i] = {kAttributeNames[i], attributes.Find(kAttributeNames[i])};
        }
        Notes::StartElement(name, XmlAttributes(found));
    }
};

std::string NotesOfTree(const std::string& text) {
    const ParsedXml tree = ParseTree(text);
    // The tree knows entities; the reader wants no text that declares any.
    if (!tree.IsParsed() || text.find("<!ENTITY") != std::string::npos) {
        return "refused";
    }
    Notes notes;
    WalkTree(tree.Root(), notes);
    return notes.Get();
}

std::string NotesOfEvents(const std::string& text) {
    FoundNotes notes;
    return ReadXml(text, notes) ? notes.Get() : "refused";
}

TEST(XmlReader, SeesWhatTheTreeHolds) {
    const unsigned seed = std::random_device()();
    RandomXml documents(seed);
    int wellFormed = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string text = documents.Make();
        const std::string expected = NotesOfTree(text);
        ASSERT_EQ(expected, NotesOfEvents(text)) << "seed " << seed << ": " << text;
        wellFormed += expected == "refused" ? 0 : 1;
    }
    EXPECT_LT(5000, wellFormed) << "seed " << seed;
    EXPECT_GT(18000, wellFormed) << "seed " << seed;
}

/// Whether libxml2 takes a text into a tree, and does not cut its content at that.
bool IsWholeInTree(const std::string& text, std::size_t contentSize) {
    const ParsedXml tree = ParseTree(text);
    if (!tree.IsParsed()) {
        return false;
    }
    return XmlUtil_GetContent(tree.Root()).size() == contentSize;
}

/// Counts the bytes of all texts.
class TextSize : public XmlHandler {
public:
    void StartElement(std::string_view, const XmlAttributes&) override {}
    void Text(std::string_view text) override { size += text.size(); }
    void EndElement() override {}

    std::size_t size = 0;
};

bool IsReadWhole(const std::string& text, std::size_t contentSize) {
    TextSize texts;
    return ReadXml(text, texts) && texts.size == contentSize;
}

TEST(XmlReader, LimitsAreThoseOfTheTree) {
    constexpr std::size_t kMost = 10'000'000;
    // NOLINTNEXTLINE(bugprone-string-constructor): the size is the point
    const std::string most(kMost, 'x');
    const std::string less = most.substr(1000);
    struct LongCase {
        const char* name;
        std::string body;
        std::size_t size;  // of the content
        bool isRead;
    };
    const std::vector<LongCase> cases = {
        {"one piece", most + "x", kMost + 1, true},
        {"two pieces", most.substr(1) + "&amp;", kMost, true},
        {"two pieces, too many", most + "&amp;", kMost + 1, false},
        {"two pieces, too many, more behind", most + "&amp;x<p/>", kMost + 2, false},
        {"short, then long", "&amp;" + most, kMost + 1, false},
        {"after a comment", most + "<!-- c -->&amp;x", kMost + 2, true},
        {"after an instruction", most + "<?p?>&amp;x", kMost + 2, true},
        {"after an element", most + "<p/>&amp;x", kMost + 2, true},
        {"after CDATA", most + "<![CDATA[x]]>&amp;x", kMost + 3, true},
        {"CDATA", "<![CDATA[" + most + "]]>&amp;", kMost + 1, true},
        {"CDATA, too long", "<![CDATA[" + most + "x]]>", kMost + 1, false},
        {"CDATA twice", "<![CDATA[" + most.substr(1) + "]]><![CDATA[x]]>", kMost, true},
        {"CDATA twice, too many", "<![CDATA[" + most + "]]><![CDATA[x]]>", kMost + 1, false},
        {"attribute", "<p a=\"" + less + "\"/>x", 1, true},
        {"attribute, too long", "<p a=\"" + most + "x\"/>x", 1, false},
        {"comment", "<!--" + less + "-->x", 1, true},
        {"comment, too long", "<!--" + most + "xx-->x", 1, false},
        {"name, too long", "<" + less.substr(0, 60'000) + "/>x", 1, false},
    };
    for (const LongCase& item : cases) {
        const std::string text = "<o>" + item.body + "</o>";
        EXPECT_EQ(item.isRead, IsReadWhole(text, item.size)) << item.name;
        EXPECT_EQ(item.isRead, IsWholeInTree(text, item.size)) << item.name;
        // What is converted comes in other pieces.
        const std::string converted = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + text;
        EXPECT_EQ(IsWholeInTree(converted, item.size), IsReadWhole(converted, item.size))
            << item.name;
    }
}

TEST(XmlReader, DepthLimitIsThatOfTheTree) {
    for (std::size_t depth = 250; depth < 265; ++depth) {
        const std::string text = Repeat(depth, "<o>") + Repeat(depth, "</o>");
        Notes notes;
        EXPECT_EQ(ParseTree(text).IsParsed(), ReadXml(text, notes)) << depth;
    }
}

}  // namespace
}  // namespace Corvel::AutoCli
