#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "corvel/autocli/plugins/XmlTree.h"

namespace Corvel::Testing {

/// An element of a descriptor that is made and changed by a test.
struct DescriptorNode {
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string text;
    std::vector<DescriptorNode> children;
};

std::string Xml(const DescriptorNode& node);

/// What a text is read as; an empty reference when it is refused.
std::shared_ptr<const AutoCli::XmlTree> TreeOf(const std::string& xml);

/// An input specification with parameters and constraints of all kinds, and a context.
DescriptorNode SampleInput();
/// A list of structures that hold values of all kinds, structures too.
DescriptorNode SampleOutput();
/// A command with everything that there is.
DescriptorNode SampleCommand();

}  // namespace Corvel::Testing
