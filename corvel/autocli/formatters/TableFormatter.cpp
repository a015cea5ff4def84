#include "corvel/autocli/formatters/TableFormatter.h"

#include "corvel/autocli/formatters/OutputRoot.h"
#include "corvel/autocli/formatters/TableRendering.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::AutoCli {

using MetaObj::MetaList;
using MetaObj::MetaType;

namespace {

/// Null for anything but a list of structures.
const MetaList* AsListOfStructs(const MetaObj::MetaObject* value) {
    const MetaList* list = MetaObj::View(value).list;
    return list != nullptr && list->GetListType() == MetaType::Struct ? list : nullptr;
}

}  // namespace

std::shared_ptr<TableFormatter> TableFormatter::New() {
    return std::make_shared<TableFormatter>();
}

TableFormatter::TableFormatter() : Formatter("table") {
    SetDescription(
        "Print a list of structs as a table, with each row being one entry in the list and each "
        "column being a field of the structure.");
    ReserveParams(6);
    AddParam("fields:<TypeName>",
             "The list of fields and the order in which to print them for the type named in "
             "<TypeName>",
             true);
    AddParam("show-header",
             "Optionally disable showing column headers by passing the 'false' value");
    AddParam("wrap-last", "If 'true' wrap the last column to the width of the terminal.");
    AddParam("units:<TypeName>.<FieldName>",
             "Use the given 'units' value as a suffix for a given field.  For example specifying "
             "\"units:ScsiDeviceList.Size\" = \"Mb\" would append the string 'Mb' to the end of a "
             "field");
    AddParam("printf:<TypeName>.<FieldName>",
             "Use the given 'printf' formatting string for printing a value.  This uses standard "
             "printf syntax to format and print a Value.  For example specifying "
             "\"units:ScsiDeviceList.Size\" = \"Mb\" would append the string 'Mb' to the end of a "
             "field");
    AddParam("header-line",
             "Optionally remove the line of '-' characters after the header.  By default this "
             "paramter is assumed to be true.  Setting it to 'false' will remove the line.  This "
             "parameter only has meaning if 'show-header' is also true");
}

TableFormatter::~TableFormatter() = default;

bool TableFormatter::Format(const std::shared_ptr<CallSpec::Output>& output,
                            FormatParameters& parameters,
                            DisplayContext& display,
                            std::ostream& stream) {
    const auto root = OutputRoot(output);
    const MetaList* list = AsListOfStructs(root.get());
    if (list == nullptr) {
        throw CorvelException(
            "Error: Unexpected type for output, formatter, table, expected a List of structs");
    }
    const auto definition = list->GetListStructure();
    if (definition == nullptr) {
        if (list->GetCount() != 0) {
            throw CorvelException("Error: Unable to get structure type from list output.");
        }
        return true;
    }
    return WriteTable(list->GetObjects(), *definition, parameters, display, stream);
}

}  // namespace Corvel::AutoCli
