#include <sys/stat.h>

#include <climits>
#include <cstdlib>
#include <new>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlmemory.h>

#include "corvel/autocli/plugins/XmlDocument.h"
#include "corvel/autocli/plugins/XmlNodes.h"
#include "corvel/metaobj/MetaObject.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::AutoCli {
namespace {

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

TEST(XmlDocument, ParsedTextHasARoot) {
    const auto document = XmlDocument::Parse("<?xml version=\"1.0\"?><o/>", "test");
    EXPECT_TRUE(document.IsParsed());
    EXPECT_EQ("o", NodeName(document.GetRoot()));
}

TEST(XmlDocument, UnparseableTextHasNoRoot) {
    for (const std::string_view text : {std::string_view(), std::string_view("<o>")}) {
        const auto document = XmlDocument::Parse(text, "test");
        EXPECT_FALSE(document.IsParsed());
        EXPECT_EQ(nullptr, document.GetRoot());
    }
}

TEST(XmlDocument, TextLongerThanTheParserCountsIsUnparseable) {
    const char text = '<';
    const auto document =
        XmlDocument::Parse(std::string_view(&text, static_cast<std::size_t>(INT_MAX) + 1), "test");
    EXPECT_FALSE(document.IsParsed());
}

TEST(XmlDocument, FileIsParsedAsItsTextIs) {
    const TemporaryDirectory folder;
    const auto document = XmlDocument::ParseFile(folder.Write("file.xml", "<o><p/></o>"));
    EXPECT_TRUE(document.IsParsed());
    EXPECT_EQ("o", NodeName(document.GetRoot()));
    for (const std::string& text : {std::string(), std::string("<o>"), std::string("<o/><p/>")}) {
        EXPECT_FALSE(XmlDocument::ParseFile(folder.Write("bad.xml", text)).IsParsed()) << text;
    }
}

TEST(XmlDocument, WhatIsNoRegularFileIsUnparseable) {
    const TemporaryDirectory folder;
    const std::string fifo = folder.File("fifo");
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    for (const std::string& path : {fifo,
                                    folder.Path().string(),
                                    std::string("/dev/zero"),
                                    folder.File("nosuch"),
                                    std::string("-"),
                                    std::string()}) {
        EXPECT_FALSE(XmlDocument::ParseFile(path).IsParsed()) << path;
    }
}

TEST(XmlDocument, FileThatCannotBeReadIsUnparseable) {
    // A regular file whose reading fails from its first byte on: unmapped memory of this process.
    EXPECT_FALSE(XmlDocument::ParseFile("/proc/self/mem").IsParsed());
}

TEST(XmlDocument, WantOfMemoryNeverTurnsIntoALostOrOtherValue) {
    const std::string text =
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><o><structure typeName=\"Disk\">"
        "<field name=\"a\"><int>1</int></field><field name=\"b\"><string>t&amp;&#233;xt</string>"
        "</field></structure></o>";
    const std::string expected = XmlUtil_ParseXmlOutput(text)->ToString();
    xmlSetStructuredErrorFunc(nullptr, [](void*, auto*) {});  // it has much to say
    for (long number = 1;; ++number) {
        const FailingAllocation failing(number);
        try {
            const auto value = XmlUtil_ParseXmlOutput(text);
            ASSERT_NE(nullptr, value) << number;
            ASSERT_EQ(expected, value->ToString()) << number;
        } catch (const std::bad_alloc&) {
            continue;
        }
        if (!failing.HasFailed()) {
            EXPECT_LT(20, number);
            break;
        }
    }
    xmlSetStructuredErrorFunc(nullptr, nullptr);
}

TEST(XmlDocument, WantOfMemoryNeverMakesAFileUnparseable) {
    const TemporaryDirectory folder;
    const std::string path = folder.Write("file.xml", "<o a=\"b\">text<p/></o>");
    for (long number = 1;; ++number) {
        const FailingAllocation failing(number);
        try {
            ASSERT_TRUE(XmlDocument::ParseFile(path).IsParsed()) << number;
        } catch (const std::bad_alloc&) {
            continue;
        }
        if (!failing.HasFailed()) {
            EXPECT_LT(20, number);
            break;
        }
    }
}

}  // namespace
}  // namespace Corvel::AutoCli
