#pragma once

#include <iosfwd>
#include <memory>

#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/platform/Export.h"

namespace Corvel::MetaObj {
class MetaList;
class MetaObject;
class MetaStruct;
}  // namespace Corvel::MetaObj

namespace Corvel::AutoCli {

/// The formatter "simple": prints any value as indented text. A structure is a line with its type
/// name (or the header that the user chose) and a colon, then one line "Name: value" for each field,
/// three blanks deeper; structures and lists of structures follow at deeper levels.
///
/// Parameters, for structures of type T:
///   "fields:" + T, "fields"   the fields to print, in this order; the second for types without the
///                             first; else all of them
///   "header:" + T             the header; the text between two percent signs in it is replaced by
///                             the field of that name, if there is one (of several only the last);
///                             "<NONE>" suppresses the line
///   "align-fields"            "true" pads all names of a structure to the longest
///   "units:" + T + "." + F, "printf:" + T + "." + F   see AutoCli_FormatField()
///
/// Failures: none is raised; bad data leaves an error line where the value would stand. A null value
///           is printed as nothing. A field that does not exist ends its structure after the line
///           "Error getting field " + name.
class CORVEL_EXPORT SimpleFormatter : public Formatter {
public:
    static std::shared_ptr<SimpleFormatter> New();
    SimpleFormatter();
    ~SimpleFormatter() override;

    /// Prints the root, a list at level -1 so that its items stand at the left margin. Nothing is
    /// wrapped. @return true.
    bool Format(const std::shared_ptr<CallSpec::Output>& output,
                FormatParameters& parameters,
                DisplayContext& display,
                std::ostream& stream) override;

    /// Prints one value, or "Error reading a bool", "Error reading a int", "Error reading a string"
    /// when its class is not that of its type. A scalar is not indented: its line has begun already.
    void Format(const std::shared_ptr<MetaObj::MetaObject>& value,
                const FormatParameters& parameters,
                std::ostream& stream,
                int level) const;
    /// Null prints "Error reading a struct from output.".
    void FormatStruct(const std::shared_ptr<MetaObj::MetaStruct>& structure,
                      const FormatParameters& parameters,
                      std::ostream& stream,
                      int level) const;
    /// A list of scalars is one line; other items are separated by empty lines. Null prints
    /// "Error reading a List".
    void FormatList(const std::shared_ptr<MetaObj::MetaList>& list,
                    const FormatParameters& parameters,
                    std::ostream& stream,
                    int level) const;
};

}  // namespace Corvel::AutoCli
