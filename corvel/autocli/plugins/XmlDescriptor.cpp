#include "corvel/autocli/plugins/XmlDescriptor.h"

#include "corvel/autocli/plugins/DescriptorElements.h"
#include "corvel/autocli/plugins/XmlNodeTree.h"

namespace Corvel::AutoCli {

using CallSpec::InputSpec;
using CallSpec::OutputSpec;
using CallSpec::ParameterConstraint;

std::shared_ptr<InputSpec> ExtractInputSpec(xmlNode* node) {
    return ExtractInputSpec(TreeOfNode(node)->Root());
}

void ExtractInputParam(xmlNode* node, const std::shared_ptr<InputSpec>& inputSpec) {
    ExtractInputParam(TreeOfNode(node)->Root(), *inputSpec);
}

std::shared_ptr<ParameterConstraint> ExtractParamConstraint(xmlNode* node) {
    return ExtractParamConstraint(TreeOfNode(node)->Root());
}

std::vector<std::pair<std::string, std::string>> ExtractEnum(xmlNode* node) {
    return ExtractEnum(TreeOfNode(node)->Root());
}

std::shared_ptr<OutputSpec> ExtractOutputSpec(xmlNode* node) {
    return ExtractOutputSpec(TreeOfNode(node)->Root());
}

void ExtractFormatParams(xmlNode* node, const std::shared_ptr<ExtensionCommand>& command) {
    ExtractFormatParams(TreeOfNode(node)->Root(), *command);
}

void ExtractMetaData(xmlNode* node, const std::shared_ptr<ExtensionCommand>& /*command*/) {
    ExtractMetaData(TreeOfNode(node)->Root());
}

}  // namespace Corvel::AutoCli
