#pragma once

#include <deque>
#include <list>
#include <string>
#include <utility>
#include <vector>

#include "corvel/corvel.h"

namespace Corvel::Fuzz {

/// The words of a line, found by walking over it with two flags.
std::deque<std::string> SplitLikeReference(const std::string& line);

/// What a command line is to become.
struct TakenApart {
    using Pair = std::pair<std::string, std::string>;

    std::list<std::string> path;
    std::vector<Pair> dispatcherParameters;
    std::vector<Pair> commandParameters;
    std::vector<std::string> errors;
};

/// Takes words apart by regular expressions, one word after the other.
TakenApart TakeApart(std::deque<std::string> words, const CallSpec::InputSpec& inputSpec);

}  // namespace Corvel::Fuzz
