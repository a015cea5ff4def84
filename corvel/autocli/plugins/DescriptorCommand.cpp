#include "corvel/autocli/plugins/DescriptorCommand.h"

#include <string>
#include <utility>

#include "corvel/autocli/plugins/DescriptorElements.h"
#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/autocli/plugins/SoundSpecs.h"
#include "corvel/metaobj/CorvelException.h"

namespace Corvel::AutoCli {

namespace {

XmlElement RequireChild(XmlElement element, Word name) {
    const XmlElement child = FindOnlyChild(element, name);
    if (!child) {
        throw CorvelException("Unable to find <" + std::string(SpellingOf(name)) +
                              "> element, which is required for a command.");
    }
    return child;
}

std::string RequireExecuteCommand(XmlElement element) {
    std::string text = ContentOfOnlyChild(element, Word::Execute);
    if (text.empty()) {
        throw CorvelException(
            "Missing or empty <execute> tag.  This tag must specify a valid execution string for "
            "this command.");
    }
    return text;
}

}  // namespace

std::shared_ptr<ExtensionCommand> BuildCommand(const std::shared_ptr<const XmlTree>& tree,
                                               XmlElement element) {
    auto command = ExtensionCommand::New();
    command->_declared = std::make_unique<DeclaredSpecs>();
    command->_declared->tree = tree;
    command->SetDescription(ContentOfOnlyChild(element, Word::Description));
    if (const XmlElement metaData = FindOnlyChild(element, Word::MetaData)) {
        ExtractMetaData(metaData);
    }
    const XmlElement input = RequireChild(element, Word::InputSpec);
    if (IsCertainlySoundInput(input)) {
        command->_declared->input = input;
    } else {
        command->SetInputSpec(ExtractInputSpec(input));
    }
    const XmlElement output = RequireChild(element, Word::OutputSpec);
    if (IsCertainlySoundOutput(output)) {
        command->_declared->output = output;
    } else {
        command->SetOutputSpec(ExtractOutputSpec(output));
    }
    ExtractFormatParams(RequireChild(element, Word::FormatParameters), *command);
    command->SetExecuteCommand(RequireExecuteCommand(element));
    command->SetStdin(ContentOfOnlyChild(element, Word::Stdin));
    return command;
}

}  // namespace Corvel::AutoCli
