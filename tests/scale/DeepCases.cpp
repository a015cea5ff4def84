#include <list>
#include <string>
#include <utility>
#include <vector>

#include <libxml/tree.h>

#include "tests/scale/Case.h"
#include <corvel/corvel.h>

namespace Corvel::Scale {

namespace {

using AutoCli::CliDispatcher;
using AutoCli::CommandInput;
using AutoCli::CommandOutput;
using AutoCli::ExtensionCommand;
using AutoCli::Namespace;
using AutoCli::NamespaceNode;
using CallSpec::InputSpec;
using CallSpec::OutputSpec;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;
using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

/// Structures within structures, the innermost with a number.
std::shared_ptr<MetaStruct> DeepStruct(std::size_t depth) {
    auto value = MetaStruct::New("S");
    value->SetField("x", 1);
    for (std::size_t i = 1; i < depth; ++i) {
        auto outer = MetaStruct::New("S");
        outer->SetField("x", std::move(value));
        value = std::move(outer);
    }
    return value;
}

/// Structures with a list of one structure.
std::shared_ptr<MetaStruct> DeepList(std::size_t depth) {
    auto value = MetaStruct::New("S");
    value->SetField("x", 1);
    for (std::size_t i = 1; i < depth; ++i) {
        auto list = MetaList::New(MetaType::Struct, value);
        list->Add(std::move(value));
        auto outer = MetaStruct::New("S");
        outer->SetField("x", std::move(list));
        value = std::move(outer);
    }
    return value;
}

/// Compared as values, as definition and instance, and as what a command declares and returns.
void CompareDeep(const std::shared_ptr<MetaStruct>& first,
                 const std::shared_ptr<MetaStruct>& second,
                 const std::shared_ptr<MetaStruct>& deeper) {
    Require(first->IsSameStructure(second), "equal values are the same structure");
    std::list<std::string> errors;
    Require(!first->IsSameStructure(deeper, &errors) && !errors.empty(), "a deeper one is not");
    const auto declared = OutputSpec::New();
    declared->SetRootObject(first);
    const auto output = CommandOutput::New();
    output->SetRootObject(second);
    Require(declared->Validate(output, nullptr), "output as declared is valid");
    output->SetRootObject(deeper);
    Require(!declared->Validate(output, &errors), "deeper output is not");
    Require(MetaStruct::New(first)->GetStructureDefinition() == first, "it may be a definition");
}

void CompareStructs(std::size_t depth) {
    CompareDeep(DeepStruct(depth), DeepStruct(depth), DeepStruct(depth + 1));
}

void CompareLists(std::size_t depth) {
    CompareDeep(DeepList(depth), DeepList(depth), DeepList(depth + 1));
}

void Definitions(std::size_t depth) {
    auto definition = MetaStruct::New("S");
    definition->SetField("x", 1);
    for (std::size_t i = 0; i < depth; ++i) {
        definition = MetaStruct::New(definition);
        definition->SetField("x", 1);
    }
    Require(definition->MatchesStructureDefinition(), "each is made as its definition says");
}

void DeepText(std::size_t depth) {
    for (const auto& value : {DeepStruct(depth), DeepList(depth)}) {
        Require(value->ToString().size() > 10 * depth, "a text with every level");
    }
}

void DeepTable(std::size_t depth) {
    auto list = MetaList::New(MetaType::Struct, DeepStruct(depth));
    list->Add(DeepStruct(depth));
    Require(CountLines(list, {"table"}) == 3, "one row with a long cell");
    std::string path = "fields=x";
    for (std::size_t i = 1; i < depth; ++i) {
        path += ".x";
    }
    Require(CountLines(list, {"table", {path}}) == 3, "one row with the innermost number");
}

/// Every formatter that shows levels indents them, so that what it prints grows with their square.
void Format(const char* formatter, std::size_t depth, std::size_t lines) {
    for (const auto& value : {DeepStruct(depth), DeepList(depth)}) {
        Require(CountLines(value, {formatter}) >= lines, "a line for each level");
    }
}

void DeepSimple(std::size_t depth) {
    Format("simple", depth, 2 * depth);
}

void DeepXml(std::size_t depth) {
    Format("xml", depth, 4 * depth);
}

void DeepJson(std::size_t depth) {
    Format("json", depth, 2 * depth);
}

void DeepPython(std::size_t depth) {
    Format("python", depth, 0);
}

xmlNode* AddChild(xmlNode* parent, const char* name) {
    return xmlNewChild(parent, nullptr, reinterpret_cast<const xmlChar*>(name), nullptr);
}

void SetAttribute(xmlNode* node, const char* name, const char* value) {
    xmlNewProp(
        node, reinterpret_cast<const xmlChar*>(name), reinterpret_cast<const xmlChar*>(value));
}

/// A tree of nodes that a program made: the parser would not have let it through.
void BuildFromNodes(std::size_t depth) {
    xmlDoc* const document = xmlNewDoc(reinterpret_cast<const xmlChar*>("1.0"));
    xmlNode* node = xmlNewNode(nullptr, reinterpret_cast<const xmlChar*>("structure"));
    xmlDocSetRootElement(document, node);
    SetAttribute(node, "typeName", "S");
    for (std::size_t i = 1; i < depth; ++i) {
        node = AddChild(node, "field");
        SetAttribute(node, "name", "x");
        node = AddChild(node, "structure");
        SetAttribute(node, "typeName", "S");
    }
    const auto value = AutoCli::XmlUtil_BuildMetaObject(xmlDocGetRootElement(document));
    xmlFreeDoc(document);
    const std::string text = value->ToString();
    Require(text.size() == 11 * (depth - 1) + 2 + 2 * (depth - 1), "every level read");
}

std::shared_ptr<ParameterSpec> MakeParameter(const char* name) {
    auto parameter = ParameterSpec::New(name, ParameterType::String);
    parameter->SetDescription("A text.");
    parameter->SetRequired(false);
    return parameter;
}

std::shared_ptr<ExtensionCommand> MakeCommand(const std::string& text) {
    auto command = ExtensionCommand::New();
    auto inputSpec = InputSpec::New();
    inputSpec->AddParameter(MakeParameter("text"));
    command->SetInputSpec(inputSpec);
    auto outputSpec = OutputSpec::New();
    outputSpec->SetRootObject(MetaObj::MetaString::New());
    command->SetOutputSpec(outputSpec);
    command->SetExecuteCommand(text);
    command->SetStdin(text);
    return command;
}

/// Expanded, and held to be safe or not. It does not run: no shell takes a line of that length.
void Substitute(const std::string& text) {
    const auto command = MakeCommand(text + TooLongForShell());
    for (const bool isGiven : {true, false}) {
        const auto input = CommandInput::New();
        input->SetInputSpec(command->GetInputSpec());
        if (isGiven) {
            input->AddParameter("text", "it's; a value");
        }
        Require(!command->SubstituteInput(input, false).empty(), "an expansion");
        Require(!command->SubstituteInput(input, true).empty(), "one for the standard input");
        const auto output = CommandOutput::New();
        command->Execute(input, output);
        Require(output->HasError(), "an outcome");
    }
}

void Braces(std::size_t depth) {
    Substitute(": " + Repeated("$if{text,", depth) + "$val{text}" + Repeated("}", depth));
    Substitute(": " + Repeated("{", depth) + "$if{none,$val{text}}" + Repeated("}", depth));
    Substitute(": $val{text} " + Repeated("$if{none,{", depth));
}

/// What a shell nests, with a value in the innermost place and one behind.
void ShellNesting(std::size_t depth) {
    const std::pair<const char*, const char*> pairs[] = {
        {"$(", ")"},
        {"${x:-", "}"},
        {"$((", "))"},
        {"\"$(", ")\""},
        {"`", "`"},
        {"(", ")"},
        {"{ ", ";}"},
        {"{", "}"},
        {"$(case x in x) ", ";; esac)"},
        {"<<E\n", ""},
        {"if true; then ", "; fi"},
        {"cat <<E $(", "\n)"},
        {"'", ""},
        {"\\", ""},
        {"(", " <<E)"},
        {"x | sh | ", ""},
        {"env -v awk ", ""},
        {"-v awk ", ""},
        {"a", "="},
        {"a", "["},
        {"case x in ", ""},
        {"(x|", ")"},
        {"x() ", ""},
        {"\"", ""},
    };
    for (const auto& [open, close] : pairs) {
        Substitute("false " + Repeated(open, depth) + "$val{text}" + Repeated(close, depth) +
                   " $val{text}");
    }
}

class Tree {
public:
    explicit Tree(std::size_t depth) {
        std::shared_ptr<NamespaceNode> node = _dispatcher->GetRootNamespace();
        for (std::size_t i = 0; i < depth; ++i) {
            node = node->SubNamespace("a");
            _path.emplace_back("a");
        }
        _deepest = node;
        node->RegisterNamespaceNode(MakeCommand("echo"), "run");
        _path.emplace_back("run");
    }

    const std::shared_ptr<CliDispatcher>& Dispatcher() const { return _dispatcher; }
    const std::shared_ptr<NamespaceNode>& Deepest() const { return _deepest; }
    const std::list<std::string>& Path() const { return _path; }

    /// The lines of what the command prints, status and all.
    std::size_t Run(const std::list<std::string>& path, const char* option, const char* formatter) {
        const auto input = CommandInput::New();
        const auto output = CommandOutput::New();
        input->SetDispatcher("quorcli");
        input->SetCommandPath(path);
        if (option != nullptr) {
            input->AddParameter(option, "");
        }
        Require(_dispatcher->ExecuteCommand(input, output), "the command runs");
        return CountLines(output->GetRootObject(), {formatter, {"fields=Command,Namespace"}, 80});
    }

private:
    std::shared_ptr<CliDispatcher> _dispatcher = CliDispatcher::New();
    std::shared_ptr<NamespaceNode> _deepest;
    std::list<std::string> _path;
};

void Namespaces(std::size_t depth) {
    Tree tree(depth);
    const std::shared_ptr<NamespaceNode>& deepest = tree.Deepest();
    Require(deepest->GetPath().size() == depth, "a path with every name");
    Require(deepest->GetPathString(' ').size() == 2 * depth - 1, "the same as a text");
    Require(deepest->GetDispatcher() == tree.Dispatcher().get(), "the root is found");
    std::list<std::string> path = tree.Path();
    const auto command = tree.Dispatcher()->GetRootNamespace()->ResolveNode(path);
    Require(command->GetName() == "run" && path == tree.Path(), "the command is found");
    Require(tree.Run({"quorcli", "command", "list"}, nullptr, "table") == 4, "two commands listed");
    Require(tree.Run(tree.Path(), "help", "commandhelp") > 3, "help of the deepest command");
    tree.Dispatcher()->PrintChildren(deepest, CommandOutput::New());
}

/// As a command line names it, also wrongly.
void DeepCommandLine(std::size_t depth) {
    Tree tree(depth);
    std::vector<std::string> words(tree.Path().begin(), tree.Path().end());
    words.emplace_back("--help");
    AutoCli::OptionParser parser;
    parser.ParseVector(words);
    Require(tree.Dispatcher()->HandleOptions(parser, false), "help is printed");
    words.insert(words.end() - 1, "more");
    AutoCli::OptionParser wrong;
    wrong.ParseVector(words);
    std::string message;
    try {
        tree.Dispatcher()->HandleOptions(wrong, false);
    } catch (const CorvelException& e) {
        message = e.what();
    }
    Require(message.ends_with("Commands cannot have sub-commands or sub-namespaces."), "a refusal");
}

/// Hung in from the innermost to the outermost.
void NamespacesUpwards(std::size_t depth) {
    std::shared_ptr<NamespaceNode> top = Namespace::New();
    const std::shared_ptr<NamespaceNode> innermost = top;
    for (std::size_t i = 0; i < depth; ++i) {
        const auto parent = Namespace::New();
        parent->RegisterNamespaceNode(top, "a");
        top = parent;
    }
    CliDispatcher dispatcher;
    dispatcher.GetRootNamespace()->RegisterNamespaceNode(top, "a");
    Require(innermost->GetPath().size() == depth + 1, "a path with every name");
}

}  // namespace

std::span<const Case> DeepCases() {
    static constexpr Case kCases[] = {
        {"deep-compare-structs", CompareStructs},
        {"deep-compare-lists", CompareLists},
        {"deep-definitions", Definitions},
        {"deep-text", DeepText},
        {"deep-table", DeepTable},
        {"deep-simple", DeepSimple},
        {"deep-xml", DeepXml},
        {"deep-json", DeepJson},
        {"deep-python", DeepPython},
        {"deep-nodes", BuildFromNodes},
        {"deep-braces", Braces},
        {"deep-shell-nesting", ShellNesting},
        {"deep-namespaces", Namespaces},
        {"deep-namespaces-upwards", NamespacesUpwards},
        {"deep-command-line", DeepCommandLine},
    };
    return kCases;
}

}  // namespace Corvel::Scale
