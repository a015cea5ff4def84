#include "corvel/autocli/formatters/SimpleFormatter.h"

#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/OutputRoot.h"
#include "corvel/autocli/formatters/SimpleRendering.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::AutoCli {

using MetaObj::MetaType;
using MetaObj::ValueView;

namespace {

/// The value; without one, a value of that type which cannot be read.
ValueView ViewAs(MetaType type, const MetaObj::MetaObject* value) {
    ValueView view = MetaObj::View(value);
    if (view.kind == MetaObj::ValueKind::Null) {
        view.kind = MetaObj::ValueKind::Mismatch;
        view.type = type;
    }
    return view;
}

}  // namespace

std::shared_ptr<SimpleFormatter> SimpleFormatter::New() {
    return std::make_shared<SimpleFormatter>();
}

SimpleFormatter::SimpleFormatter() : Formatter("simple") {
    SetDescription(
        "Print a representation of any item to the screen. This can be any type, but this "
        "formatter excels at printing structs and lists of structs.");
    ReserveParams(5);
    AddParam("header:<TypeName>",
             "When printing a struct type, prefix the output of the struct with the given text "
             "string and then indent all the struct fields below this text.  The TypeName value "
             "can be determined from the raw or xml output for a command.  For this field a "
             "special variable substitution is available in the value of this format paramter.  "
             "If the value contains a string %<Field>% then this formatter will do token "
             "substitution and replace the value of %<Field>% with the given value of the field "
             "in <TypeName>.  Note this can only be a scalar type (int, bool, string) and must "
             "exactly match one of the fields in the struct <TypeName>.  Example: "
             "'header:ScsiDeviceList' = 'SCSI Device %Device Name%' will result in a header of "
             "'SCSI Device naa.XXXX'.  Note only one %<Field>% tag is supported.  To disable the "
             "display of the header the special value <NONE> can be used");
    AddParam("fields:<TypeName>",
             "When printing a struct use the set of fields given in this parameter.  This allows "
             "the ordering and filtering of the fields printed for a given struct. If no "
             "':<TypeName>' is given then then all structs encounted in the output will attempt "
             "to use these fields.  This provides a reasonable default and compatible output "
             "with other formatters");
    AddParam("units:<TypeName>.<FieldName>",
             "When printing a struct use the given 'units' value as a suffix for a given field.  "
             "For example specifying \"units:ScsiDeviceList:Size\" = \"Mb\" would append the "
             "string 'Mb' to the end of a field");
    AddParam("printf:<TypeName>.<FieldName>",
             "When printing a struct use the given 'printf' formatting string for printing the "
             "value.  This uses standard printf syntax to print a given field.  For example "
             "specifying \"units:ScsiDeviceList.Size\" = \"Mb\" would append the string 'Mb' to "
             "the end of a field");
    AddParam("align-fields",
             "When printing a struct left align all of the fields values so they all start at "
             "the same column");
}

SimpleFormatter::~SimpleFormatter() = default;

bool SimpleFormatter::Format(const std::shared_ptr<CallSpec::Output>& output,
                             FormatParameters& parameters,
                             DisplayContext& /*display*/,
                             std::ostream& stream) {
    const auto root = OutputRoot(output);
    const bool isList = root != nullptr && root->GetType() == MetaType::List;
    Format(root, parameters, stream, isList ? -1 : 0);
    return true;
}

void SimpleFormatter::Format(const std::shared_ptr<MetaObj::MetaObject>& value,
                             const FormatParameters& parameters,
                             std::ostream& stream,
                             int level) const {
    WriteSimple(MetaObj::View(value.get()), parameters, stream, level);
}

void SimpleFormatter::FormatStruct(const std::shared_ptr<MetaObj::MetaStruct>& structure,
                                   const FormatParameters& parameters,
                                   std::ostream& stream,
                                   int level) const {
    WriteSimple(ViewAs(MetaType::Struct, structure.get()), parameters, stream, level);
}

void SimpleFormatter::FormatList(const std::shared_ptr<MetaObj::MetaList>& list,
                                 const FormatParameters& parameters,
                                 std::ostream& stream,
                                 int level) const {
    WriteSimple(ViewAs(MetaType::List, list.get()), parameters, stream, level);
}

}  // namespace Corvel::AutoCli
