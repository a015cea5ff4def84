#include "tests/autocli/plugins/NodeMutator.h"

#include <cstddef>
#include <utility>

namespace Corvel::Testing {

void NodeMutator::Change(DescriptorNode& root) {
    DescriptorNode& node = Any(root);
    switch (Below(8)) {
        case 0:
            node.name = AnyWord();
            break;
        case 1:
            node.text = AnyWord();
            break;
        case 2:
            node.attributes.clear();
            break;
        case 3:
            if (!node.attributes.empty()) {
                AnyOf(node.attributes).second = AnyWord();
            }
            break;
        case 4:
            if (!node.children.empty()) {
                node.children.erase(node.children.begin() +
                                    static_cast<std::ptrdiff_t>(Below(node.children.size())));
            }
            break;
        case 5:
            if (!node.children.empty()) {
                node.children.push_back(DescriptorNode(AnyOf(node.children)));
            }
            break;
        case 6:
            node.children.push_back(DescriptorNode(Any(root)));
            break;
        default:
            std::swap(AnyOf(_donors).text, node.text);
            break;
    }
}

DescriptorNode& NodeMutator::Any(DescriptorNode& root) {
    DescriptorNode* node = &root;
    while (!node->children.empty() && Below(4) != 0) {
        node = &AnyOf(node->children);
    }
    return *node;
}

std::string NodeMutator::AnyWord() {
    static const std::vector<std::string> kWords = {"",
                                                    "string",
                                                    "int",
                                                    "bool",
                                                    "list",
                                                    "structure",
                                                    "field",
                                                    "parameter",
                                                    "constraint",
                                                    "stringenum",
                                                    "regex",
                                                    "range",
                                                    "enum",
                                                    "intenum",
                                                    "true",
                                                    "false",
                                                    "flag",
                                                    "s",
                                                    "S",
                                                    "-",
                                                    "ss",
                                                    "size",
                                                    "Size",
                                                    "a-b",
                                                    "x",
                                                    " 1",
                                                    "+1",
                                                    "1x",
                                                    "007",
                                                    "-9",
                                                    "99999999999999999999",
                                                    "Disk",
                                                    "Dis k",
                                                    "red",
                                                    "green",
                                                    "path",
                                                    "description",
                                                    "output-spec",
                                                    "string-list",
                                                    "\xc3\xa9"};
    return kWords[Below(kWords.size())];
}

}  // namespace Corvel::Testing
