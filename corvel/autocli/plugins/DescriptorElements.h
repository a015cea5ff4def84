#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "corvel/autocli/plugins/XmlTree.h"
#include "corvel/callspec/ParameterSpec.h"

namespace Corvel::CallSpec {
class InputSpec;
class OutputSpec;
class ParameterConstraint;
}  // namespace Corvel::CallSpec

namespace Corvel::AutoCli {

class ExtensionCommand;

// What the functions of XmlDescriptor.h do, over the elements of a tree: the one place that knows
// the parts of an extension command and the messages about them. No element counts as one without
// attributes and content.

std::shared_ptr<CallSpec::InputSpec> ExtractInputSpec(XmlElement element);
void ExtractInputParam(XmlElement element, CallSpec::InputSpec& inputSpec);
std::shared_ptr<CallSpec::ParameterConstraint> ExtractParamConstraint(XmlElement element);
std::vector<std::pair<std::string, std::string>> ExtractEnum(XmlElement element);
std::shared_ptr<CallSpec::OutputSpec> ExtractOutputSpec(XmlElement element);
void ExtractFormatParams(XmlElement element, ExtensionCommand& command);
void ExtractMetaData(XmlElement element);

/// The kind of parameter that the word in a descriptor means.
std::optional<CallSpec::ParameterType> ParameterTypeOfWord(std::string_view word);

/// "true" and "false".
std::optional<bool> TruthOfWord(std::string_view word);

/// What kind of constraint the word in a descriptor means.
std::optional<CallSpec::ParameterConstraintType> ConstraintTypeOfWord(std::string_view word);

/// @return the one child element of that name, or none. Raises
///   "More than one instance of " + name + " found, expected only one."
XmlElement FindOnlyChild(XmlElement element, Word name);

/// @return the content of the one child element of that name, empty when there is none. Raises
///   "Illegal Duplicate tags found.  The tag " + name +
///   " was expected only once, but was found multiple times."
std::string ContentOfOnlyChild(XmlElement element, Word name);

}  // namespace Corvel::AutoCli
