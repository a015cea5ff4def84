#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "tests/autocli/plugins/DescriptorNode.h"

namespace Corvel::Testing {

/// Changes commands at random.
class NodeMutator {
public:
    explicit NodeMutator(std::uint32_t seed) : _random(seed) {}

    void Change(DescriptorNode& root);
    std::size_t Below(std::size_t count) { return _random() % count; }

private:
    template <typename T>
    T& AnyOf(std::vector<T>& items) {
        return items[Below(items.size())];
    }

    /// Deeper elements are met as often as those at the top.
    DescriptorNode& Any(DescriptorNode& root);
    std::string AnyWord();

    std::mt19937 _random;
    std::vector<DescriptorNode> _donors = {{"", {}, " ", {}}, {"", {}, "5", {}}, {"", {}, "", {}}};
};

}  // namespace Corvel::Testing
