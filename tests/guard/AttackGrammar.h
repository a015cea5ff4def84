#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace Corvel::Testing {

/// Makes templates of whole and of broken shell language, and values of attacks.
class AttackGrammar {
public:
    explicit AttackGrammar(unsigned seed) : _random(seed) {}

    std::string Template();
    std::string Value();
    std::size_t Below(std::size_t bound) { return _random() % bound; }

private:
    std::string Command(int depth);
    std::string Word(int depth);
    std::string Fragment(int depth);
    std::string Token();
    std::string Junk();
    const std::string& OneOf(const std::vector<std::string>& texts) {
        return texts[Below(texts.size())];
    }

    std::mt19937 _random;
};

}  // namespace Corvel::Testing
