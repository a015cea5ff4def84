#include <list>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/CliDispatcherHelpFormatter.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/formatters/FormattingSupport.h"
#include "tests/autocli/formatters/TextSupport.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

std::shared_ptr<MetaStruct> Node(const std::string& name,
                                 const std::string& description,
                                 const std::string& type) {
    auto node = MetaStruct::New("QuorcliCommandPrintNode");
    node->SetField("Description", description);
    node->SetField("Name", name);
    node->SetField("Type", type);
    return node;
}

std::shared_ptr<MetaList> Nodes(const std::vector<std::shared_ptr<MetaStruct>>& nodes) {
    auto list = MetaList::New(MetaType::Struct, Node("", "", ""));
    for (const auto& node : nodes) {
        list->Add(node);
    }
    return list;
}

std::shared_ptr<MetaStruct> Listing(const std::list<std::string>& path,
                                    const std::shared_ptr<MetaList>& nodes) {
    auto listing = MetaStruct::New("QuorcliCommandPrint");
    listing->SetField("Dispatcher", "quorcli");
    listing->SetField("NamespaceNodes", nodes);
    listing->SetField("Path", path);
    return listing;
}

Rendering Help(const std::shared_ptr<MetaObject>& root, std::uint16_t screenWidth = 0) {
    CliDispatcherHelpFormatter formatter;
    return Render(formatter, root, {}, screenWidth);
}

TEST(CliDispatcherHelpFormatter, DescribesItself) {
    const auto formatter = CliDispatcherHelpFormatter::New();
    EXPECT_EQ(formatter->GetName(), "clihelp");
    EXPECT_EQ(formatter->GetDescription(), "Format the --help output for all commands.");
    ExpectParams(*formatter, {});
}

TEST(CliDispatcherHelpFormatter, ListsOneNamespaceAndNoCommands) {
    EXPECT_EQ(Help(Listing({}, Nodes({Node("storage", "Storage of the host", "Namespace")}))),
              (Rendering{true,
                         "Usage: quorcli [disp options] <namespaces> <command>\n"
                         "\n"
                         "For help please run quorcli --help\n"
                         "\n"
                         "Available Namespaces: \n"
                         "storage  Storage of the host\n"
                         "Available Commands: \n"}));
}

TEST(CliDispatcherHelpFormatter, ListsNamespacesBeforeCommandsUnderThePath) {
    EXPECT_EQ(Help(Listing({"storage", "core"},
                           Nodes({Node("list", "List all", "Command"),
                                  Node("path", "Paths", "Namespace"),
                                  Node("remove", "Remove one", "Command"),
                                  Node("other", "Neither", "Root")}))),
              (Rendering{true,
                         "Usage: quorcli [disp options] storage core <namespaces> <command>\n"
                         "\n"
                         "For help please run quorcli --help\n"
                         "\n"
                         "Available Namespaces: \n"
                         "path  Paths\n"
                         "Available Commands: \n"
                         "list    List all\n"
                         "remove  Remove one\n"}));
}

TEST(CliDispatcherHelpFormatter, WrapsDescriptionsToTheScreen) {
    EXPECT_EQ(Help(Listing({}, Nodes({Node("list", "one two three four", "Command")})), 20),
              (Rendering{true,
                         "Usage: quorcli [disp options] <namespaces> <command>\n"
                         "\n"
                         "For help please run quorcli --help\n"
                         "\n"
                         "Available Namespaces: \n"
                         "Available Commands: \n"
                         "list  one two three \n"
                         "      four\n"}));
}

TEST(CliDispatcherHelpFormatter, PathMayHoldAnyScalars) {
    auto listing = Listing({}, Nodes({}));
    listing->SetField("Path", std::list<long>{1, 2});
    EXPECT_EQ(Help(listing),
              (Rendering{true,
                         "Usage: quorcli [disp options] 1 2 <namespaces> <command>\n"
                         "\n"
                         "For help please run quorcli --help\n"
                         "\n"
                         "Available Namespaces: \n"
                         "Available Commands: \n"}));
}

TEST(CliDispatcherHelpFormatter, NullNameInThePathIsAnEmptyOne) {
    auto path = MetaList::New(MetaType::String);
    path->Add("storage");
    ForceInto(*path, nullptr);
    auto listing = Listing({}, Nodes({}));
    listing->SetField("Path", path);
    EXPECT_EQ(Help(listing),
              (Rendering{true,
                         "Usage: quorcli [disp options] storage  <namespaces> <command>\n"
                         "\n"
                         "For help please run quorcli --help\n"
                         "\n"
                         "Available Namespaces: \n"
                         "Available Commands: \n"}));
}

TEST(CliDispatcherHelpFormatter, MissingFieldsReadAsEmptyAndABadList) {
    const Rendering expected{true,
                             "Usage:  [disp options] <namespaces> <command>\n"
                             "\n"
                             "For help please run  --help\n"
                             "\n"
                             "Available Namespaces: \n"
                             "ERROR, list is bad"
                             "Available Commands: \n"
                             "ERROR, list is bad"};
    EXPECT_EQ(Help(MetaStruct::New("QuorcliCommandPrint")), expected);
    auto listing = MetaStruct::New("QuorcliCommandPrint");
    listing->SetField("Dispatcher", 5);
    listing->SetField("Path", "storage");
    listing->SetField("NamespaceNodes", "none");
    EXPECT_EQ(Help(listing), expected);
}

std::string Refusal(const std::shared_ptr<MetaObject>& root) {
    return Testing::ThrownText([&] { Help(root); });
}

TEST(CliDispatcherHelpFormatter, RefusesAnyOtherRoot) {
    const std::string expected =
        "Error: Unexpected type for help output, formatter expected a struct with help data";
    EXPECT_EQ(Refusal(nullptr), expected);
    EXPECT_EQ(Refusal(MetaInt::New(1)), expected);
    EXPECT_EQ(Refusal(Nodes({})), expected);
    EXPECT_EQ(Refusal(MetaStruct::New("QuorCliCommandPrint")), expected);
    EXPECT_EQ(Refusal(FalseValue::New(MetaType::Struct)), expected);
    CliDispatcherHelpFormatter formatter;
    FormatParameters parameters;
    DisplayContext display;
    std::ostringstream stream;
    EXPECT_THROW(formatter.Format(nullptr, parameters, display, stream), CorvelException);
    EXPECT_EQ(stream.str(), "");
}

TEST(CliDispatcherHelpFormatter, ExtractsTheTextOfAStringField) {
    const CliDispatcherHelpFormatter formatter;
    auto structure = MetaStruct::New("T");
    structure->SetField("text", "abc");
    structure->SetField("number", 5);
    std::string result = "before";
    EXPECT_TRUE(formatter.ExtractString("text", structure, result));
    EXPECT_EQ(result, "abc");
    EXPECT_FALSE(formatter.ExtractString("number", structure, result));
    EXPECT_EQ(result, "");
    result = "before";
    EXPECT_FALSE(formatter.ExtractString("missing", structure, result));
    EXPECT_EQ(result, "");
    result = "before";
    EXPECT_FALSE(formatter.ExtractString("text", nullptr, result));
    EXPECT_EQ(result, "");
}

/// What HandleList() did.
Rendering List(const std::string& typeWord, const std::shared_ptr<MetaList>& nodes) {
    DisplayContext display;
    std::ostringstream stream;
    const bool isComplete =
        CliDispatcherHelpFormatter().HandleList(typeWord, nodes, display, stream);
    return {isComplete, stream.str()};
}

TEST(CliDispatcherHelpFormatter, HandlesOneKindOfNode) {
    const auto nodes = Nodes({Node("list", "List all", "Command"), Node("a", "b", "Namespace")});
    EXPECT_EQ(List("Command", nodes), (Rendering{true, "Available Commands: \nlist  List all\n"}));
    EXPECT_EQ(List("Root", nodes), (Rendering{true, "Available Roots: \n"}));
}

TEST(CliDispatcherHelpFormatter, NullListIsBad) {
    EXPECT_EQ(List("Command", nullptr),
              (Rendering{false, "Available Commands: \nERROR, list is bad"}));
}

TEST(CliDispatcherHelpFormatter, NodesWithoutDescriptionAreAnImplementationError) {
    auto node = MetaStruct::New("Node");
    node->SetField("Name", "list");
    node->SetField("Type", "Command");
    auto nodes = MetaList::New(MetaType::Struct, node);
    nodes->Add(node);
    EXPECT_EQ(List("Command", nodes),
              (Rendering{false,
                         "Available Commands: \n"
                         "Error: Unknown field in field list: Description\n"
                         "Unable to get Descriptions for this command.  Implementation error."}));
}

TEST(CliDispatcherHelpFormatter, ListWithoutNodesOfAnyKindIsEmpty) {
    EXPECT_EQ(List("Command", MetaList::New(MetaType::Struct, nullptr)),
              (Rendering{true, "Available Commands: \n"}));
    auto numbers = MetaList::New(MetaType::Int);
    numbers->Add(5);
    EXPECT_EQ(List("Command", numbers), (Rendering{true, "Available Commands: \n"}));
}

TEST(CliDispatcherHelpFormatter, NeitherReadsNorChangesTheStateOfTheStream) {
    auto output = CallSpec::Output::New();
    output->SetRootObject(Listing({"a"}, Nodes({Node("list", "List all", "Command")})));
    FormatParameters parameters;
    DisplayContext display;
    std::ostringstream stream;
    Disturb(stream);
    const auto flags = stream.flags();
    EXPECT_TRUE(CliDispatcherHelpFormatter().Format(output, parameters, display, stream));
    EXPECT_EQ(stream.str(),
              "Usage: quorcli [disp options] a <namespaces> <command>\n"
              "\n"
              "For help please run quorcli --help\n"
              "\n"
              "Available Namespaces: \n"
              "Available Commands: \n"
              "list  List all\n");
    EXPECT_EQ(stream.flags(), flags);
    EXPECT_EQ(stream.width(), 30);
    EXPECT_EQ(stream.fill(), '*');
}

}  // namespace
}  // namespace Corvel::AutoCli
