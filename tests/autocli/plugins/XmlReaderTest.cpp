#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/XmlReader.h"
#include "corvel/metaobj/CorvelException.h"
#include "tests/autocli/plugins/XmlNotes.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::ThrownText;
using Notes = Testing::XmlNotes;

/// The notes of a text. Nothing may appear on standard error.
std::string Read(const std::string& text) {
    testing::internal::CaptureStderr();
    std::string notes = Testing::NotesOfText(text);
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    return notes;
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

}  // namespace
}  // namespace Corvel::AutoCli
