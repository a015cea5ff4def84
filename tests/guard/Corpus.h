#pragma once

#include <random>
#include <string>
#include <vector>

/// Templates, and values that try to get out of them.
namespace Corvel::Testing {

/// The parameters that the templates here name: two with one value, one with several.
inline const std::string kFirst = "aa";
inline const std::string kSecond = "bb";
inline const std::string kList = "ll";

struct GuardedTemplate {
    std::string text;
    /// The template itself makes the value a command, or code.
    bool runsValue = false;
    /// Its lines need processes, or end their shell, so that each needs one of its own.
    bool isSlow = false;
};

/// Each kind of token in each position of the shell's grammar.
const std::vector<GuardedTemplate>& Corpus();

/// Fifty symbols: what means something to a shell or to the expansion of templates, what is a blank
/// to somebody, and little else.
const std::vector<std::string>& Alphabet();

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
