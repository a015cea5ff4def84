#pragma once

#include <iosfwd>
#include <memory>

#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/platform/Export.h"

namespace Corvel::MetaObj {
class MetaObject;
}

namespace Corvel::AutoCli {

/// The formatter "json": the root value as indented JSON, null values as null. It has no
/// parameters, and the screen does not matter. A structure or list always starts on a line of its
/// own, so that its document begins with an empty line:
///
///
///   {
///      "Names":
///      [
///         "sda",
///         "sdb"
///      ],
///      "Removable": false,
///      "Size": -7
///   }
///
/// Texts are escaped byte by byte: \" \\ \/ \b \t \n \f \r, and \u00xx for every other byte below
/// 32 or above 126, so that a character outside ASCII becomes one escape for each of its bytes.
/// Field names are written as they are.
///
/// Failures: none is raised. In the place of a value whose class is not the one of its type stands
///           "Error reading a bool", "Error reading a int", "Error reading a string", "Error reading
///           a struct from output.", "Error reading a List" or "Unknown data type", and a newline.
class CORVEL_EXPORT JsonFormatter : public Formatter {
public:
    static std::shared_ptr<JsonFormatter> New();
    JsonFormatter();
    ~JsonFormatter() override;

    /// @return true.
    bool Format(const std::shared_ptr<CallSpec::Output>& output,
                FormatParameters& parameters,
                DisplayContext& display,
                std::ostream& stream) override;

    /// Writes one value and its descendants, without the newline that ends a document.
    /// @param level  of nesting; a document's root has -1. Lines are indented by three blanks for
    ///               each level above 0, a structure's fields are 2 levels deeper and a list's items
    ///               3.
    void Format(const std::shared_ptr<MetaObj::MetaObject>& value, std::ostream& stream, int level);
};

}  // namespace Corvel::AutoCli
