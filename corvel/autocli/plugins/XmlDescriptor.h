#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "corvel/autocli/plugins/XmlUtil.h"
#include "corvel/platform/Export.h"

namespace Corvel::CallSpec {
class InputSpec;
class OutputSpec;
class ParameterConstraint;
}  // namespace Corvel::CallSpec

namespace Corvel::AutoCli {

class ExtensionCommand;

/// Builds the parts of an extension command from the elements of a descriptor that declare them.
///
/// Only element nodes count as elements. An attribute that is empty counts as one that is missing,
/// and a null node as an element without attributes and content.
///
/// Failures: every refusal is a CorvelException; besides the texts told here, the second of two
///           elements that may stand only once raises what XmlUtil_FindChildNode() and
///           XmlUtil_GetContentForChildByTag() raise.

/// The input of an `input-spec` element: each `parameter` as ExtractInputParam() reads it, and each
/// `context-supported` by its text. Other children are passed over.
CORVEL_EXPORT std::shared_ptr<CallSpec::InputSpec> ExtractInputSpec(xmlNode* node);

/// Adds the parameter of a `parameter` element to an input:
///   <parameter name="size" type="int" required="true" shortname="s" secret="false">
///     <description>How large.</description>
///     <constraint type="range"><range min="1" max="10"/></constraint>
///   </parameter>
/// Raises the first that applies of
///   "Unable to parse Input Parameter.  Missing required attribute: 'name'"
///   "Unable to parse Input Parameter " + name + ". Missing or invalid required attribute: 'type'.
///    Must be one of [string, string-list, bool, bool-list, int, int-list]"
///       (two blanks before "Must"; "flag" is accepted, too)
///   "Unable to parse Input Paramter " + name + ". Invalid 'secret', must be one of
///    ['true', 'false']"
///   "Unable to parse Input Paramter " + name + ". Invalid type " + type + " for secret, must be
///    'string'"
///   "Unable to parse Input Paramter " + name + ". Missing or invalid 'required', must be one of
///    ['true', 'false']"
///   "Unable to parse Input Paramter " + name + ". Missing command description"
///   what ParameterSpec raises for the name and the short name
///   "Unable to build parameter constraint for parameter " + name + ".  Error was: " + what
///    ExtractParamConstraint() or ParameterSpec::SetConstraint() raised
///   what InputSpec::AddParameter() raises.
CORVEL_EXPORT void ExtractInputParam(xmlNode* node,
                                     const std::shared_ptr<CallSpec::InputSpec>& inputSpec);

/// The constraint of a `constraint` element:
///   <constraint type="stringenum"><enum><enum-value value="a">described</enum-value></enum> ..
///   <constraint type="intenum"><enum><enum-value value="1"/></enum> ..
///   <constraint type="regex"><regex>[a-z]+</regex> ..
///   <constraint type="range"><range min="1" max="10"/> ..
/// Raises
///   "Missing or invalid constraint 'type', must be one of [stringenum, intenum, regex, range] got
///    '" + type + "'"
///   "Error parsing parameter constraint.  There was no data included inside the <constraint> tag
///    for the given constraint type"   (no child element, or no `enum` for an enumeration)
///   "Error parsing integer enumeration. Expected integer, but got " + value
///   "Error parsing regex from parameter constraint.Missing or empty 'regex' tag"
///   "Error parsing 'range' parameter constraint.  Range requires both 'min' and 'max' attributes
///    and that both are integers."
///   what ExtractEnum() and the setters of ParameterConstraint raise.
CORVEL_EXPORT std::shared_ptr<CallSpec::ParameterConstraint> ExtractParamConstraint(xmlNode* node);

/// The values of an `enum` element with their descriptions, in the order of the file. Raises
///   "Error parsing 'enum-value', missing required attribute 'value'"
///   "Found unexpected tag while building an enum.  Unexpected tag was: " + tag
CORVEL_EXPORT std::vector<std::pair<std::string, std::string>> ExtractEnum(xmlNode* node);

/// The output of an `output-spec` element: the shape that its one element stands for, as
/// XmlUtil_BuildMetaObject() reads it; without an element, an output without shape. Raises
///   "Found more than one node under 'output-spec', where only one node is supported.  The tag was "
///    + tag of the second
///   "Unable to build output spec.  Error was " + what XmlUtil_BuildMetaObject() raised
CORVEL_EXPORT std::shared_ptr<CallSpec::OutputSpec> ExtractOutputSpec(xmlNode* node);

/// Gives a command the default formatting of a `format-parameters` element: the formatter that
/// `formatter` names, and each `format-parameter`. Other children are passed over. Raises
///   "Invalid plugin format.  Duplicate <formatter> tags found"
CORVEL_EXPORT void ExtractFormatParams(xmlNode* node,
                                       const std::shared_ptr<ExtensionCommand>& command);

/// Checks a `meta-data` element. Deliberate: nothing of it reaches the command. Raises
///   "Error parsing 'meta-data-entry', missing required attribute 'name'"
///   "Found unexpected tag while building meta-data set.  Unexpected tag was: " + tag
CORVEL_EXPORT void ExtractMetaData(xmlNode* node, const std::shared_ptr<ExtensionCommand>& command);

}  // namespace Corvel::AutoCli
