// A descriptor, loaded and hung into a tree, then the same once more. Both loads answer as a reader
// does that takes everything in at once; the second registration gives what it must for everything
// that is there already; and every command, asked afterwards, has its specifications, to the last
// detail those of that reader.

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "corvel/corvel.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/descriptor/NameTree.h"
#include "fuzz/descriptor/Reference.h"
#include "fuzz/support/InputText.h"
#include "fuzz/support/ValueDump.h"

namespace {

using namespace Corvel;
using namespace Corvel::Fuzz;
using AutoCli::ExtensionCommand;
using AutoCli::XmlPlugin;

/// A file in memory that has a name.
class MemoryFile {
public:
    MemoryFile() : _descriptor(memfd_create("descriptor", MFD_CLOEXEC)) {
        Promise(_descriptor >= 0, "there is a file in memory");
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(_descriptor); }

    void Write(const std::string& text) const {
        const bool isWritten =
            ftruncate(_descriptor, 0) == 0 &&
            pwrite(_descriptor, text.data(), text.size(), 0) == static_cast<long>(text.size());
        Promise(isWritten, "the file in memory is written");
    }
    std::string Path() const { return "/proc/self/fd/" + std::to_string(_descriptor); }

private:
    int _descriptor;
};

/// @return the text of the exception; empty when there was none.
std::string Refusal(const std::function<void()>& action) {
    try {
        action();
    } catch (const CorvelException& exception) {
        return exception.what();
    }
    return {};
}

std::string Describe(const CallSpec::ParameterSpec& parameter) {
    std::string text = parameter.GetName() + "|" + parameter.GetShortName() + "|" +
                       std::to_string(static_cast<unsigned>(parameter.GetType())) +
                       (parameter.IsRequired() ? "|required" : "|") +
                       (parameter.IsSecret() ? "|secret|" : "|") + parameter.GetDescription(true);
    if (const auto constraint = parameter.GetConstraint()) {
        text += "|" + std::to_string(static_cast<unsigned>(constraint->GetType())) +
                constraint->ToString();
        for (const auto& [value, description] : constraint->GetStringEnumWithDesc()) {
            text += "|" + value + "=" + description;
        }
    }
    return text + "\n";
}

std::string Describe(const CallSpec::InputSpec& inputSpec) {
    std::string text;
    for (const auto& parameter : inputSpec.GetParameters()) {
        text += Describe(*parameter);
    }
    for (const std::string& context : inputSpec.GetContexts()) {
        text += "context " + context + "\n";
    }
    return text;
}

/// @return what the command runs, or sends, without input. A parameter of its own may stand in the
///         way of the one that asks for help: then the text of that exception.
std::string Expand(ExtensionCommand& command, bool isForStdin) {
    std::string text;
    const std::string refusal =
        Refusal([&] { text = command.SubstituteInput(nullptr, isForStdin); });
    return refusal.empty() ? text : refusal;
}

/// Everything that a command tells about itself.
std::string Describe(ExtensionCommand& command) {
    std::string text = Describe(*command.GetInputSpecInternal());
    text += "output " +
            DumpValue(command.GetOutputSpecInternal()->GetRootObject(), TypeNames::Shown) + "\n";
    const AutoCli::FormatParameters format = command.GetDefaultOutputFormatParameters();
    text += "formatter " + format.GetFormatter() + "\n";
    for (const auto& [key, value] : format.GetParameters()) {
        text += key + "=" + value + "\n";
    }
    text += "line " + Expand(command, false) + "\n";
    text += "stdin " + Expand(command, true) + "\n";
    text += "help " + Refusal([&] { command.GetInputSpec(); });
    return text;
}

void CheckNodes(const std::shared_ptr<AutoCli::Namespace>& root, const NameTree& tree) {
    for (const auto& [path, declaration] : tree.Nodes()) {
        std::list<std::string> names = XmlPlugin::SplitPath(path);
        const std::shared_ptr<AutoCli::NamespaceNode> node = root->ResolveNode(names);
        Promise(node->GetDescription() == declaration.description, "a node has its description");
        const auto command = std::dynamic_pointer_cast<ExtensionCommand>(node);
        Promise((command == nullptr) == (declaration.command == nullptr), "a command is one");
        if (command != nullptr) {
            Promise(Describe(*command) == Describe(*declaration.command),
                    "a command is what the descriptor declares");
        }
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryFile kFile;
    const std::string text = ToText(data, size);
    kFile.Write(text);
    const auto first = XmlPlugin::New(kFile.Path());
    const auto second = XmlPlugin::New(kFile.Path());
    std::vector<Declaration> declarations;
    const std::string refusal = Refusal([&] { declarations = LoadByTree(text, kFile.Path()); });
    Promise(Refusal([&] { first->Initialize(); }) == refusal, "a load answers as the reference");
    Promise(Refusal([&] { second->Initialize(); }) == refusal, "a second load answers the same");

    auto root = AutoCli::RootNamespace::New(nullptr);
    NameTree tree;
    for (const auto& plugin : {first, second}) {
        const std::string expected = Refusal([&] { tree.Register(declarations); });
        Promise(Refusal([&] { plugin->RegisterNamespaces(root); }) == expected,
                "a registration answers as the reference");
    }
    CheckNodes(root, tree);
    return 0;
}
