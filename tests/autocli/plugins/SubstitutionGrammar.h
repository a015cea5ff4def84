#pragma once

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "tests/autocli/plugins/SubstitutionCall.h"

namespace Corvel::Testing {

/// Makes templates of whole tokens, of parts of tokens and of what stands around them.
class SubstitutionGrammar {
public:
    explicit SubstitutionGrammar(unsigned seed) : _random(seed) {}

    std::string Template(int depth = 3);
    /// Values for some of the parameters, at most three each, made by makeValue().
    Values SomeValues(const std::function<std::string()>& makeValue);
    /// At least `shortest` and at most three letters of the alphabet.
    std::string Word(const std::string& alphabet, int shortest);
    int Below(int bound) { return static_cast<int>(_random() % static_cast<unsigned>(bound)); }

private:
    std::string Nested(int depth);
    std::string Fragment();
    const std::string& Name();
    /// Mostly of a parameter whose single value can be asked for.
    const std::string& SingleName();
    const std::string& AnyOf(const std::vector<std::string>& words);
    std::string Flag() { return Below(2) == 0 ? "true" : "false"; }

    std::mt19937 _random;
};

}  // namespace Corvel::Testing
