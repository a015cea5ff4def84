#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/platform/Export.h"

namespace Corvel::MetaObj {
class MetaObject;
}

namespace Corvel::AutoCli {

/// The formatter "python": the root value as one line of Python literal syntax. It has no
/// parameters, and the screen does not matter. For example
///
///   {"Names": ["""sda""", """sdb""", ], "Removable": False, "Size": -7, }
///
/// In texts a double quotation mark becomes \" and a newline \n; backslashes and everything else
/// stay as they are, and field names too.
///
/// Failures: a null value, wherever it stands, raises "Invalid MetaObject passed to Format in
///           PythonFormatter"; the stream may then hold an incomplete text. In the place of a value
///           whose class is not the one of its type stands "Error reading a bool", "Error reading a
///           int", "Error reading a string", "Error reading a struct from output.", "Error reading a
///           List" or "Unknown data type", and a newline.
class CORVEL_EXPORT PythonFormatter : public Formatter {
public:
    static std::shared_ptr<PythonFormatter> New();
    PythonFormatter();
    ~PythonFormatter() override;

    /// @return true.
    bool Format(const std::shared_ptr<CallSpec::Output>& output,
                FormatParameters& parameters,
                DisplayContext& display,
                std::ostream& stream) override;

    /// Writes one value and its descendants, without the newline that ends a document.
    /// @param level  does not matter: everything stands on one line.
    void Format(const std::shared_ptr<MetaObj::MetaObject>& value, std::ostream& stream, int level);

    /// @return whether every byte of the text is below 128.
    static bool IsAllAscii(const std::string& text);
    static bool IsAllAscii(const char* text);
};

}  // namespace Corvel::AutoCli
