#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/XmlTree.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::AutoCli {
namespace {

using Testing::TemporaryDirectory;

std::shared_ptr<const XmlTree> Tree(const std::string& text) {
    XmlTreeBuilder builder;
    EXPECT_TRUE(ReadXml(text, builder)) << text;
    return builder.Finish();
}

/// Writes down what it is told, as an XML text without escapes.
class Writer final : public XmlHandler {
public:
    void StartElement(std::string_view name, const XmlAttributes& attributes) override {
        _names.emplace_back(name);
        text.append("<").append(name);
        for (const auto& [attribute, value] : attributes) {
            text.append(" ").append(attribute).append("='").append(value).append("'");
        }
        text += ">";
    }
    void Text(std::string_view piece) override { text += piece; }
    void EndElement() override {
        text.append("</").append(_names.back()).append(">");
        _names.pop_back();
    }

    std::string text;

private:
    std::vector<std::string> _names;
};

std::string Replayed(XmlElement element) {
    Writer writer;
    element.Replay(writer);
    return writer.text;
}

/// The names of the elements directly below, one after the other.
std::string ChildNames(XmlElement element) {
    std::string names;
    for (const XmlElement child : element.Children()) {
        names.append(child.Name()).append(";");
    }
    return names;
}

XmlElement FirstChild(XmlElement element) {
    return *element.Children().begin();
}

TEST(XmlTree, KeepsElementsAttributesAndTexts) {
    const auto tree = Tree(
        "<plugin a='1' name='n'><parameter name='size' type='int'><description>How <b>very</b> "
        "large.</description></parameter><x/><range/></plugin>");
    const XmlElement root = tree->Root();
    ASSERT_TRUE(root);
    EXPECT_EQ(Word::Other, root.GetWord());
    EXPECT_EQ("plugin", root.Name());
    EXPECT_EQ("n", root.Attribute(Word::Name));
    EXPECT_EQ("", root.Attribute(Word::Type));
    EXPECT_EQ("parameter;x;range;", ChildNames(root));
    const XmlElement parameter = FirstChild(root);
    EXPECT_EQ(Word::Parameter, parameter.GetWord());
    EXPECT_EQ("parameter", parameter.Name());
    EXPECT_EQ("size", parameter.Attribute(Word::Name));
    EXPECT_EQ("int", parameter.Attribute(Word::Type));
    const XmlElement description = FirstChild(parameter);
    EXPECT_EQ("How very large.", description.Content());
    EXPECT_EQ("b;", ChildNames(description));
    EXPECT_EQ("very", FirstChild(description).Content());
    EXPECT_TRUE(FirstChild(description).Children().IsEmpty());
}

TEST(XmlTree, NoElementHasNothing) {
    const XmlElement none;
    EXPECT_FALSE(none);
    EXPECT_EQ(Word::None, none.GetWord());
    EXPECT_EQ("", none.Name());
    EXPECT_EQ("", none.Attribute(Word::Name));
    EXPECT_EQ("", none.Content());
    EXPECT_FALSE(none.HasContent());
    EXPECT_TRUE(none.Children().IsEmpty());
    EXPECT_EQ("", Replayed(none));
}

TEST(XmlTree, LeavesOutWhatMeansNothing) {
    struct Case {
        const char* text;
        const char* kept;
    };
    const std::vector<Case> cases = {
        {"<x/>", "<x></x>"},
        {"<x> a <command> b <description> c </description> d </command> e </x>",
         "<x><command><description> c </description></command></x>"},
        {"<x><description>\n<list> a </list>\n</description></x>",
         "<x><description>\n<list> a </list>\n</description></x>"},
        {"<x><y> a <list> b </list></y></x>", "<x><y> a <list> b </list></y></x>"},
        {"<x names='1' name='2' NAME='3' min=''/>", "<x name='2' min=''></x>"},
        {"<x><!-- a --><?b c?><int>1<!-- d -->2<![CDATA[<3>]]></int></x>",
         "<x><int>12<3></int></x>"},
        {"<description> a </description>", "<description></description>"},
    };
    for (const auto& [text, kept] : cases) {
        EXPECT_EQ(kept, Replayed(Tree(text)->Root())) << text;
    }
}

TEST(XmlTree, FirstAttributeOfANameCounts) {
    const auto tree = Tree("<x xmlns:p='urn:p' p:path='first' path='second'/>");
    EXPECT_EQ("first", tree->Root().Attribute(Word::Path));
}

TEST(XmlTree, ContentIsTheTextOfAllDescendants) {
    const auto tree = Tree("<x><description>a<b c='d'>e<f/>g<h>i</h></b>j</description></x>");
    const XmlElement description = FirstChild(tree->Root());
    EXPECT_EQ("aegij", description.Content());
    EXPECT_TRUE(description.HasContent());
    EXPECT_FALSE(FirstChild(Tree("<x><string><b/><c/></string></x>")->Root()).HasContent());
    EXPECT_TRUE(FirstChild(Tree("<x><string><b/><c> </c></string></x>")->Root()).HasContent());
}

/// Sizes around those at which a length takes more bytes, or the tree more memory.
TEST(XmlTree, TextsOfAllSizesAreKept) {
    for (const std::size_t size :
         std::vector<std::size_t>{0, 1, 2, 253, 254, 255, 256, 257, 16'383, 16'384, 40'000}) {
        const std::string text(size, 'x');
        const std::string name = "n" + text.substr(0, 1000);
        const std::string whole = "<" + name + " path='" + text + "' min='" + text + "'><string>" +
                                  text + "</string><int>" + text + "</int></" + name + ">";
        EXPECT_EQ(whole, Replayed(Tree(whole)->Root())) << size;
    }
    std::string many;
    for (int i = 0; i < 10'000; ++i) {
        many += "<range min='" + std::to_string(i) + "'></range>";
    }
    many = "<enum>" + many + "</enum>";
    EXPECT_EQ(many, Replayed(Tree(many)->Root()));
}

TEST(XmlTree, IsAsDeepAsTheParserAllows) {
    std::string text;
    for (int depth = 0; depth < 200; ++depth) {
        text.insert(0, "<list type='list'>").append("</list>");
    }
    EXPECT_EQ(text, Replayed(Tree(text)->Root()));
}

TEST(XmlTree, OfFileReadsTheFileOrGivesNothing) {
    const TemporaryDirectory folder;
    const auto tree = XmlTree::OfFile(folder.Write("good.xml", "<x><int>1</int></x>"));
    ASSERT_NE(nullptr, tree);
    EXPECT_EQ("<x><int>1</int></x>", Replayed(tree->Root()));
    EXPECT_EQ(nullptr, XmlTree::OfFile(folder.Write("bad.xml", "<x><int>1</x>")));
    EXPECT_EQ(nullptr, XmlTree::OfFile(folder.File("nosuch.xml")));
    EXPECT_EQ(nullptr, XmlTree::OfFile(folder.Path().string()));
}

/// Behind a fault the parser may report the end of what never began.
TEST(XmlTree, FaultyTextsAreRefusedWithoutHarm) {
    for (const std::string text : {"<x><int></x>text</int></x>",
                                   "<x>< a='b'>text</>text</x>text",
                                   "<x><>text</><></></></x>text<int/>",
                                   "<x></x></x>text",
                                   "<x><int>&none;</int></x>text",
                                   "text",
                                   ""}) {
        XmlTreeBuilder builder;
        EXPECT_FALSE(ReadXml(text, builder)) << text;
    }
}

TEST(XmlTree, TooLongATextIsRefusedWhereverItStands) {
    // NOLINTNEXTLINE(bugprone-string-constructor): the size is the point
    const std::string longest(10'000'000, 'x');
    for (const std::string& text :
         {"<x><int>" + longest + "y</int></x>", "<x>" + longest + "y</x>"}) {
        XmlTreeBuilder builder;
        EXPECT_TRUE(ReadXml(text, builder));
        EXPECT_EQ(nullptr, builder.Finish());
    }
    EXPECT_EQ(longest, FirstChild(Tree("<x><int>" + longest + "</int></x>")->Root()).Content());
}

}  // namespace
}  // namespace Corvel::AutoCli
