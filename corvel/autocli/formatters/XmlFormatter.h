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

/// The formatter "xml": a document with the format parameters in effect and the root value as
/// nested typed elements, for example
///
///   <?xml version="1.0"?>
///   <?xml-stylesheet type="text/xsl" href="disks.xsl"?>       only with the parameter "stylesheet"
///   <output xmlns:quorcli="http://corvel.example/Products/QUOR/5.0/quorcli">
///      <meta-data>
///         <meta-data-field name="stylesheet" value="disks.xsl"/>          each parameter, by name
///      </meta-data>
///      <root>
///         <structure typeName="Disk">
///            <field name="Names">
///               <list type="string">       boolean, integer, string, structure or list
///                  <string>sda</string>
///               </list>
///            </field>
///            <field name="Removable">
///               <boolean>false</boolean>
///            </field>
///            <field name="Size">
///               <integer>-7</integer>
///            </field>
///         </structure>
///      </root>
///   </output>
///
/// Parameters, type names, field names and texts are escaped by SantizeString; the stylesheet's
/// address is not. Nothing is written for a null value. The screen does not matter.
///
/// Failures: none is raised. A value whose class is not the one of its type is an error line
///           without indentation: "<!-- Error reading a bool -->", "Error reading a int", "Error
///           reading a string", "Error reading a struct from output.", "Error reading a List" or
///           "Error Only simple int, bool, string and struct output supported".
class CORVEL_EXPORT XmlFormatter : public Formatter {
public:
    static std::shared_ptr<XmlFormatter> New();
    XmlFormatter();
    ~XmlFormatter() override;

    /// @return true.
    bool Format(const std::shared_ptr<CallSpec::Output>& output,
                FormatParameters& parameters,
                DisplayContext& display,
                std::ostream& stream) override;

    /// Writes one value and its descendants, as they stand in a document.
    /// @param level  of nesting: the value's own lines are indented by three blanks each.
    void Format(const std::shared_ptr<MetaObj::MetaObject>& value, std::ostream& stream, int level);
};

/// Makes a text fit for XML content and attributes: & < > % " ' become &amp; &lt; &gt; &#37; &quot;
/// &apos;, so that no percent sign occurs in a document; every other byte stays as it is.
CORVEL_EXPORT std::string SantizeString(const std::string& text);
CORVEL_EXPORT std::string SantizeString(const char* text);

}  // namespace Corvel::AutoCli
