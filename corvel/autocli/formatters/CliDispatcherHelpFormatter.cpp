#include "corvel/autocli/formatters/CliDispatcherHelpFormatter.h"

#include <vector>

#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/OutputBuffer.h"
#include "corvel/autocli/formatters/OutputRoot.h"
#include "corvel/autocli/formatters/TableRendering.h"
#include "corvel/autocli/formatters/TextRendering.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::AutoCli {

using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using MetaObj::ValueKind;

namespace {

/// A table of names and descriptions, without header, that fits the screen.
FormatParameters ListingParameters() {
    FormatParameters parameters;
    parameters.SetFormatter("table");
    parameters.SetParameter("fields", "Name,Description");
    parameters.SetParameter("table-header", "false");
    parameters.SetParameter("wrap-last", "true");
    return parameters;
}

std::vector<std::shared_ptr<MetaObject>> NodesOfType(const MetaList& nodes,
                                                     const std::string& type) {
    std::vector<std::shared_ptr<MetaObject>> selected;
    for (const std::shared_ptr<MetaObject>& node : nodes.GetObjects()) {
        const MetaStruct* structure = MetaObj::View(node.get()).structure;
        if (structure != nullptr && StringField(*structure, "Type") == type) {
            selected.push_back(node);
        }
    }
    return selected;
}

void AppendPath(TextBuffer& out, const MetaStruct& listing) {
    const MetaList* path = MetaObj::StructView(listing).Find("Path").list;
    if (path == nullptr) {
        return;
    }
    for (const std::shared_ptr<MetaObject>& name : path->GetObjects()) {
        out += ' ';
        AppendValue(out, MetaObj::View(name.get()));
    }
}

}  // namespace

std::shared_ptr<CliDispatcherHelpFormatter> CliDispatcherHelpFormatter::New() {
    return std::make_shared<CliDispatcherHelpFormatter>();
}

CliDispatcherHelpFormatter::CliDispatcherHelpFormatter() : Formatter("clihelp") {
    SetDescription("Format the --help output for all commands.");
}

CliDispatcherHelpFormatter::~CliDispatcherHelpFormatter() = default;

bool CliDispatcherHelpFormatter::Format(const std::shared_ptr<CallSpec::Output>& output,
                                        FormatParameters& /*parameters*/,
                                        DisplayContext& display,
                                        std::ostream& stream) {
    const auto listing = std::dynamic_pointer_cast<MetaStruct>(OutputRoot(output));
    if (listing == nullptr || listing->GetTypeName() != "QuorcliCommandPrint") {
        throw CorvelException(
            "Error: Unexpected type for help output, formatter expected a struct with help data");
    }
    std::string dispatcher;
    ExtractString("Dispatcher", listing, dispatcher);

    OutputBuffer out(stream);
    out += "Usage: " + dispatcher + " [disp options]";
    AppendPath(out, *listing);
    out += " <namespaces> <command>\n\n";
    out += "For help please run " + dispatcher + " --help\n\n";
    out.Flush();

    const auto nodes = std::dynamic_pointer_cast<MetaList>(listing->GetField("NamespaceNodes"));
    HandleList("Namespace", nodes, display, stream);
    HandleList("Command", nodes, display, stream);
    return true;
}

bool CliDispatcherHelpFormatter::ExtractString(const std::string& fieldName,
                                               const std::shared_ptr<MetaStruct>& structure,
                                               std::string& result) const {
    result.clear();
    if (structure == nullptr) {
        return false;
    }
    const MetaObj::ValueView value = MetaObj::StructView(*structure).Find(fieldName);
    if (value.kind != ValueKind::String) {
        return false;
    }
    result = value.text;
    return true;
}

bool CliDispatcherHelpFormatter::HandleList(const std::string& typeWord,
                                            const std::shared_ptr<MetaList>& nodes,
                                            DisplayContext& display,
                                            std::ostream& stream) const {
    OutputBuffer out(stream);
    out += "Available " + typeWord + "s: \n";
    if (nodes == nullptr) {
        out += "ERROR, list is bad";
        out.Flush();
        return false;
    }
    out.Flush();
    const auto selected = NodesOfType(*nodes, typeWord);
    const auto definition = nodes->GetListStructure();
    const bool isComplete =
        selected.empty() ||
        (definition != nullptr &&
         WriteTable(selected, *definition, ListingParameters(), display, stream));
    if (!isComplete) {
        out += "Unable to get Descriptions for this command.  Implementation error.";
        out.Flush();
    }
    return isComplete;
}

}  // namespace Corvel::AutoCli
