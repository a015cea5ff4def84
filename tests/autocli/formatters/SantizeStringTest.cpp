#include <cstddef>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/XmlFormatter.h"
#include "corvel/metaobj/MetaString.h"
#include "tests/autocli/formatters/FormattingSupport.h"
#include "tests/support/Repeat.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaString;
using Testing::Repeat;

std::string ReplaceAll(std::string text, const std::string& what, const std::string& by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
        text.replace(at, what.size(), by);
    }
    return text;
}

TEST(SantizeString, EscapesSixCharacters) {
    EXPECT_EQ("50&#37; &lt;b&gt;&amp;&apos;&quot;", SantizeString("50% <b>&'\""));
    EXPECT_EQ("&amp;amp;", SantizeString("&amp;"));
    EXPECT_EQ("", SantizeString(""));
    EXPECT_EQ("", SantizeString(nullptr));
    EXPECT_EQ("plain", SantizeString("plain"));
}

TEST(SantizeString, StandsEscapedInsideTheStringElement) {
    XmlFormatter formatter;
    EXPECT_EQ("<string>50&#37; &lt;b&gt;&amp;&apos;&quot;</string>\n",
              FormatValue(formatter, MetaString::New("50% <b>&'\""), 0));
}

TEST(SantizeString, EqualsSixReplacementsOneAfterTheOther) {
    std::string everyPair;
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            everyPair += static_cast<char>(first);
            everyPair += static_cast<char>(second);
        }
    }
    std::string expected = everyPair;
    for (const auto& [what, by] : {std::pair{"&", "&amp;"},
                                   std::pair{"<", "&lt;"},
                                   std::pair{">", "&gt;"},
                                   std::pair{"%", "&#37;"},
                                   std::pair{"\"", "&quot;"},
                                   std::pair{"'", "&apos;"}}) {
        expected = ReplaceAll(expected, what, by);
    }
    EXPECT_EQ(expected, SantizeString(everyPair));
    EXPECT_EQ(Repeat(1000, "&#37;"), SantizeString(std::string(1000, '%')));
}

}  // namespace
}  // namespace Corvel::AutoCli
