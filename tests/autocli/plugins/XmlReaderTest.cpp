#include <sys/stat.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlmemory.h>

#include "corvel/autocli/plugins/XmlReader.h"
#include "corvel/autocli/plugins/XmlUtil.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaObject.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::TemporaryDirectory;
using Testing::ThrownText;

/// Writes down what it is handed: "{name a=value,|text}", with a bar where text begins.
class Notes : public XmlHandler {
public:
    void StartElement(std::string_view name, const XmlAttributes& attributes) override {
        Note("{", name);
        Note(" ", "");
        for (const auto& attribute : attributes) {
            Note(attribute.name, "=");
            Note(attribute.value, ",");
        }
        _inText = false;
    }
    void Text(std::string_view text) override {
        Note(_inText ? "" : "|", text);
        _inText = true;
    }
    void EndElement() override {
        Note("}", "");
        _inText = false;
    }

    const std::string& Get() const { return _notes; }

private:
    void Note(std::string_view first, std::string_view second) {
        _notes.append(first).append(second);
    }

    std::string _notes;
    bool _inText = false;
};

/// The notes of a text, "refused" for one that is not well formed. Nothing may appear on standard
/// error.
std::string Read(const std::string& text) {
    testing::internal::CaptureStderr();
    Notes notes;
    const bool isRead = ReadXml(text, notes);
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    return isRead ? notes.Get() : "refused";
}

std::string ReadFile(const std::string& path) {
    Notes notes;
    return ReadXmlFile(path, notes) ? notes.Get() : "refused";
}

struct Case {
    const char* name;
    std::string text;
    std::string expected;
};

TEST(XmlReader, HandsOverElementsAndTexts) {
    const std::vector<Case> cases = {
        {"empty element", "<o/>", "{o }"},
        {"nested", "<o><a>1</a> <b>2</b>3</o>", "{o {a |1}| {b |2}|3}"},
        {"attributes in their order", "<o b=\"1\" a='2'/>", "{o b=1,a=2,}"},
        {"references", "<o a=\"&lt;&amp;&#65;&#38;\">&gt;&#x20AC;</o>", "{o a=<&A&,|>\u20AC}"},
        {"white space in a value", "<o a=\" x\n\ty \"/>", "{o a= x  y ,}"},
        {"CDATA", "<o>a<![CDATA[<b>&amp;]]>c</o>", "{o |a<b>&amp;c}"},
        {"passed over", "<o>a<!-- b --><?c d?>e</o><!-- f --><?g?>", "{o |ae}"},
        {"unknown entity", "<!DOCTYPE o SYSTEM \"/no\"><o a=\"x&b;y\">x&b;y</o>", "{o a=xy,|xy}"},
        {"prefixes", "<q:o xmlns:q=\"u\" xmlns=\"v\" q:a=\"1\" a=\"2\"/>", "{o a=1,a=2,}"},
        {"prefixes of nothing", "<q:o q:a=\"1\"/>", "{q:o q:a=1,}"},
        {"defaulted", "<!DOCTYPE o [<!ATTLIST o a CDATA \"x&amp;y\">]><o/>", "{o a=x&#38;y,}"},
        {"other encoding",
         "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><o a=\"\xe9\">caf\xe9</o>",
         "{o a=\u00e9,|caf\u00e9}"},
        {"byte order mark", "\xef\xbb\xbf<o>\u00e9</o>", "{o |\u00e9}"},
    };
    for (const Case& item : cases) {
        EXPECT_EQ(item.expected, Read(item.text)) << item.name;
    }
}

TEST(XmlReader, FindsTheFirstAttributeOfAName) {
    class Finder : public Notes {
    public:
        void StartElement(std::string_view, const XmlAttributes& attributes) override {
            found.emplace_back(attributes.Find("a"));
            found.emplace_back(attributes.Find("b"));
        }
        std::vector<std::string> found;
    };
    Finder finder;
    EXPECT_TRUE(ReadXml("<o xmlns:q=\"u\" q:a=\"1\" a=\"2\"/>", finder));
    EXPECT_EQ((std::vector<std::string>{"1", ""}), finder.found);
}

TEST(XmlReader, TextThatIsNotWellFormedIsRefused) {
    for (const std::string& text : {std::string(),
                                    std::string("<"),
                                    std::string("<o>"),
                                    std::string("<o/><p/>"),
                                    std::string("<o>\x01</o>"),
                                    std::string("<o>\xff</o>"),
                                    std::string("<o>\0</o>", 8),
                                    std::string("<!DOCTYPE o [<!ENTITY a \"b\">]><o/>")}) {
        EXPECT_EQ("refused", Read(text)) << text;
    }
}

/// Raises at the first element named so.
class Refuser : public Notes {
public:
    void StartElement(std::string_view name, const XmlAttributes& attributes) override {
        Notes::StartElement(name, attributes);
        if (name == "bad") {
            throw CorvelException("bad element");
        }
    }
};

TEST(XmlReader, WhatAHandlerRaisesEndsItsEvents) {
    Refuser handler;
    EXPECT_EQ("bad element", ThrownText([&handler] {
                  ReadXml("<o><good>1</good><bad>2</bad><bad/>3</o>", handler);
              }));
    EXPECT_EQ("{o {good |1}{bad ", handler.Get());
}

TEST(XmlReader, WhatAHandlerRaisesCountsOnlyForAWellFormedText) {
    Refuser handler;
    EXPECT_FALSE(ReadXml("<o><bad/></o>x", handler));
    EXPECT_EQ("{o {bad ", handler.Get());
}

TEST(XmlReader, FileIsReadAsItsTextIs) {
    const TemporaryDirectory folder;
    EXPECT_EQ("{o {p |x}}", ReadFile(folder.Write("file.xml", "<o><p>x</p></o>")));
    for (const std::string& text : {std::string(), std::string("<o>"), std::string("<o/><p/>")}) {
        EXPECT_EQ("refused", ReadFile(folder.Write("bad.xml", text))) << text;
    }
}

TEST(XmlReader, WhatIsNoRegularFileIsRefused) {
    const TemporaryDirectory folder;
    const std::string fifo = folder.File("fifo");
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    for (const std::string& path : {fifo,
                                    folder.Path().string(),
                                    std::string("/dev/zero"),
                                    folder.File("nosuch"),
                                    std::string("-"),
                                    std::string()}) {
        EXPECT_EQ("refused", ReadFile(path)) << path;
    }
}

TEST(XmlReader, FileThatCannotBeReadIsRefused) {
    // A regular file whose reading fails from its first byte on: unmapped memory of this process.
    EXPECT_EQ("refused", ReadFile("/proc/self/mem"));
}

TEST(XmlReader, FileThatDoesNotKnowItsSizeIsReadToItsEnd) {
    // Regular files with a size of 0. This one's content is no XML, but it has some.
    EXPECT_EQ("refused", ReadFile("/proc/self/status"));
}

TEST(XmlReader, FileLongerThanTheParserCountsIsRefused) {
    const TemporaryDirectory folder;
    const std::string path = folder.Write("long.xml", "<o/>");
    std::filesystem::resize_file(path, static_cast<std::uintmax_t>(INT_MAX) + 1);
    EXPECT_EQ("refused", ReadFile(path));
}

/// Makes one allocation of libxml2 fail: the one with this number, counted from 1; 0 for none.
class FailingAllocation {
public:
    explicit FailingAllocation(long number) {
        _sLeft = number;
        xmlMemSetup(std::free, Allocate, Reallocate, Duplicate);
    }
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation() { xmlMemSetup(std::free, std::malloc, std::realloc, ::strdup); }

    bool HasFailed() const { return _sLeft <= 0; }

private:
    static bool Fails() { return --_sLeft == 0; }
    static void* Allocate(std::size_t size) { return Fails() ? nullptr : std::malloc(size); }
    static void* Reallocate(void* block, std::size_t size) {
        return Fails() ? nullptr : std::realloc(block, size);
    }
    static char* Duplicate(const char* text) { return Fails() ? nullptr : ::strdup(text); }

    static inline long _sLeft = 0;
};

/// Runs `read` with each allocation failing in turn: it either gives the notes or raises
/// std::bad_alloc.
template <typename ReadSomething>
void ExpectNotesOrWantOfMemory(const std::string& expected, const ReadSomething& read) {
    for (long number = 1;; ++number) {
        const FailingAllocation failing(number);
        try {
            ASSERT_EQ(expected, read()) << number;
        } catch (const std::bad_alloc&) {
            continue;
        }
        if (!failing.HasFailed()) {
            EXPECT_LT(10, number);
            break;
        }
    }
}

TEST(XmlReader, WantOfMemoryNeverTurnsIntoAnythingElse) {
    const TemporaryDirectory folder;
    const std::string document =
        "<!DOCTYPE o [<!ATTLIST p b CDATA \"y\">]><o "
        "a=\"&amp;&#233;\"><q:p/>t&amp;xt<![CDATA[c]]></o>";
    const std::string expected = "{o a=&\u00e9,{q:p }|t&xtc}";
    for (const char* start : {"", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"}) {
        const std::string text = start + document;
        ExpectNotesOrWantOfMemory(expected, [&text] {
            Notes notes;
            return ReadXml(text, notes) ? notes.Get() : "refused";
        });
        const std::string path = folder.Write("file.xml", text);
        ExpectNotesOrWantOfMemory(expected, [&path] { return ReadFile(path); });
    }
}

TEST(XmlReader, WantOfMemoryNeverTurnsIntoALostOrOtherValue) {
    const std::string text =
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><o><structure typeName=\"Disk\">"
        "<field name=\"a\"><int>1</int></field><field name=\"b\"><string>t&amp;&#233;xt</string>"
        "</field></structure></o>";
    const std::string expected = XmlUtil_ParseXmlOutput(text)->ToString();
    ExpectNotesOrWantOfMemory(expected, [&text] {
        const auto value = XmlUtil_ParseXmlOutput(text);
        return value == nullptr ? "refused" : value->ToString();
    });
}

// The tree that libxml2 builds of a text is what the events are held against.

struct FreeDocument {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using Tree = std::unique_ptr<xmlDoc, FreeDocument>;

Tree ParseTree(const std::string& text) {
    constexpr int kQuiet = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    xmlSetStructuredErrorFunc(nullptr, [](void*, auto*) {});
    Tree tree(xmlReadMemory(text.data(), static_cast<int>(text.size()), "test", nullptr, kQuiet));
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
    const Tree tree = ParseTree(text);
    // The tree knows entities; the reader wants no text that declares any.
    if (tree == nullptr || text.find("<!ENTITY") != std::string::npos) {
        return "refused";
    }
    Notes notes;
    WalkTree(xmlDocGetRootElement(tree.get()), notes);
    return notes.Get();
}

std::string NotesOfEvents(const std::string& text) {
    FoundNotes notes;
    return ReadXml(text, notes) ? notes.Get() : "refused";
}

/// Makes documents of all that a text may hold, mostly well formed.
class RandomDocument {
public:
    explicit RandomDocument(unsigned seed) : _random(seed) {}

    std::string Make() {
        static const std::vector<std::string> kStarts = {
            "",
            "",
            "",
            "<?xml version=\"1.0\"?>",
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
            "<?xml version='1.0' encoding='utf-8' standalone='yes'?>\n",
            "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>",
            "<?xml version=\"1.0\" encoding=\"UTF-16\"?>",
            "\xef\xbb\xbf",
        };
        static const std::vector<std::string> kEnds = {
            "", "", "\n", "<!-- e -->", "<?p?>", "x", "<o/>", std::string(1, '\0')};
        std::string text = Pick(kStarts) + DocumentType() + Element(4) + Pick(kEnds);
        if (Chance(6)) {
            Damage(text);
        }
        return text;
    }

private:
    std::size_t Below(std::size_t end) { return _random() % end; }
    bool Chance(std::size_t oneIn) { return Below(oneIn) == 0; }
    const std::string& Pick(const std::vector<std::string>& choices) {
        return choices[Below(choices.size())];
    }

    std::string DocumentType() {
        static const std::vector<std::string> kDeclarations = {
            "<!ELEMENT o ANY>",
            "<!ATTLIST o b CDATA \"d&amp;&#65;\">",
            "<!ATTLIST p a CDATA #FIXED 'f'>",
            "<!ATTLIST q:p a CDATA 'g' c NMTOKENS ' x  y '>",
            "<!ATTLIST p q:a CDATA 'h' xmlns CDATA 'u2'>",
            "<!ATTLIST o c (x|y) #IMPLIED>",
            "<!-- c -->",
            "<?p d?>",
            "<!NOTATION n SYSTEM 'n'>",
            "<!ENTITY e 'x'>",
            "<!ENTITY % e 'x'>",
        };
        if (Chance(2)) {
            return "";
        }
        std::string text = Chance(3) ? "<!DOCTYPE o SYSTEM 'no'" : "<!DOCTYPE o";
        if (!Chance(4)) {
            text += " [";
            for (std::size_t count = Below(4); count > 0; --count) {
                const std::string& declaration = Pick(kDeclarations);
                if (declaration.find("ENTITY") == std::string::npos || Chance(4)) {
                    text += declaration;
                }
            }
            text += "]";
        }
        return text + ">";
    }

    std::string Attributes() {
        static const std::vector<std::string> kAttributes = {
            " a=\"1\"",
            " b='x &amp; y'",
            " c=\"&lt;&#38;lt;&#xe9;&quot;\"",
            " a=' 2\n\t'",
            " q:a=\"3\"",
            " r:b='4'",
            " xmlns:q=\"u\"",
            " xmlns=\"v\"",
            " b=\"caf\u00e9&apos;\"",
            " c=\"&e;&amp;e;\"",
            " c=''",
        };
        std::string text;
        for (std::size_t count = Below(3); count > 0; --count) {
            text += Pick(kAttributes);
        }
        return text;
    }

    std::string Content(int depth) {
        static const std::vector<std::string> kPieces = {
            "text",
            " \n\t",
            "a\r\nb\r",
            "caf\u00e9 \u20ac",
            "]]",
            "&amp;&lt;&gt;&quot;&apos;",
            "&#65;&#x20AC;",
            "&e;",
            "<![CDATA[]]>",
            "<![CDATA[<a>&amp;]] >]]>",
            "<!-- c -->",
            "<?p d?>",
        };
        std::string text;
        for (std::size_t count = Below(6); count > 0; --count) {
            text += depth > 0 && Chance(2) ? Element(depth - 1) : Pick(kPieces);
        }
        return text;
    }

    std::string Element(int depth) {
        static const std::vector<std::string> kNames = {"o", "o", "p", "q:p", "r:p", "int"};
        const std::string name = Pick(kNames);
        if (Chance(4)) {
            return "<" + name + Attributes() + "/>";
        }
        return "<" + name + Attributes() + ">" + Content(depth) + "</" + name + ">";
    }

    /// Drops, doubles or replaces a byte.
    void Damage(std::string& text) {
        static constexpr std::string_view kBytes("<>&;\"'/=![]-\x01\xff\xc3\0 ", 17);
        const std::size_t at = Below(text.size());
        const std::size_t taken = Below(2);
        text.replace(at, taken, Below(3), kBytes[Below(kBytes.size())]);
    }

    std::mt19937 _random;
};

TEST(XmlReader, SeesWhatTheTreeHolds) {
    const unsigned seed = std::random_device()();
    RandomDocument documents(seed);
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
    const Tree tree = ParseTree(text);
    if (tree == nullptr) {
        return false;
    }
    return XmlUtil_GetContent(xmlDocGetRootElement(tree.get())).size() == contentSize;
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
        std::string text;
        for (std::size_t i = 0; i < depth; ++i) {
            text += "<o>";
        }
        for (std::size_t i = 0; i < depth; ++i) {
            text += "</o>";
        }
        Notes notes;
        EXPECT_EQ(ParseTree(text) != nullptr, ReadXml(text, notes)) << depth;
    }
}

}  // namespace
}  // namespace Corvel::AutoCli
