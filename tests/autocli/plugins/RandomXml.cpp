#include "tests/autocli/plugins/RandomXml.h"

#include <string_view>

namespace Corvel::Testing {

std::string RandomXml::Make() {
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

std::string RandomXml::DocumentType() {
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

std::string RandomXml::Attributes() {
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

std::string RandomXml::Content(int depth) {
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

std::string RandomXml::Element(int depth) {
    static const std::vector<std::string> kNames = {"o", "o", "p", "q:p", "r:p", "int"};
    const std::string name = Pick(kNames);
    if (Chance(4)) {
        return "<" + name + Attributes() + "/>";
    }
    return "<" + name + Attributes() + ">" + Content(depth) + "</" + name + ">";
}

void RandomXml::Damage(std::string& text) {
    static constexpr std::string_view kBytes("<>&;\"'/=![]-\x01\xff\xc3\0 ", 17);
    const std::size_t at = Below(text.size());
    const std::size_t taken = Below(2);
    text.replace(at, taken, Below(3), kBytes[Below(kBytes.size())]);
}

}  // namespace Corvel::Testing
