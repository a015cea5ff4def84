#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include <gtest/gtest.h>
#include <libxml/xmlmemory.h>

#include "corvel/autocli/plugins/XmlUtil.h"
#include "corvel/metaobj/MetaObject.h"
#include "tests/autocli/plugins/ParsedXml.h"
#include "tests/autocli/plugins/XmlNotes.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::AutoCli {
namespace {

using Testing::NotesOfFile;
using Testing::NotesOfText;
using Testing::ParsedXml;
using Testing::TemporaryDirectory;

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
/// @param fewest  so many allocations are made at least.
template <typename ReadSomething>
void ExpectNotesOrWantOfMemory(const std::string& expected,
                               const ReadSomething& read,
                               long fewest = 10) {
    for (long number = 1;; ++number) {
        const FailingAllocation failing(number);
        try {
            ASSERT_EQ(expected, read()) << number;
        } catch (const std::bad_alloc&) {
            continue;
        }
        if (!failing.HasFailed()) {
            EXPECT_LT(fewest, number);
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
        ExpectNotesOrWantOfMemory(expected, [&text] { return NotesOfText(text); });
        const std::string path = folder.Write("file.xml", text);
        ExpectNotesOrWantOfMemory(expected, [&path] { return NotesOfFile(path); });
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

TEST(XmlUtil, WantOfMemoryNeverTurnsIntoALostAttributeOrContent) {
    const ParsedXml document("<o a=\"x &lt; y\">t<b>u</b></o>");
    const auto attribute = [&] { return XmlUtil_ExtractAttribute(document.Root(), "a"); };
    ExpectNotesOrWantOfMemory("x < y", attribute, 1);
    const auto content = [&] { return XmlUtil_GetContent(document.Root()); };
    ExpectNotesOrWantOfMemory("tu", content, 1);
}

}  // namespace
}  // namespace Corvel::AutoCli
