#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace Corvel::Testing {

/// Makes documents of all that a text may hold, mostly well formed.
class RandomXml {
public:
    explicit RandomXml(unsigned seed) : _random(seed) {}

    std::string Make();

private:
    std::size_t Below(std::size_t end) { return _random() % end; }
    bool Chance(std::size_t oneIn) { return Below(oneIn) == 0; }
    const std::string& Pick(const std::vector<std::string>& choices) {
        return choices[Below(choices.size())];
    }

    std::string DocumentType();
    std::string Attributes();
    std::string Content(int depth);
    std::string Element(int depth);
    /// Drops, doubles or replaces a byte.
    void Damage(std::string& text);

    std::mt19937 _random;
};

}  // namespace Corvel::Testing
