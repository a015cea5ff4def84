#include "fuzz/command_line/Reference.h"

#include <algorithm>
#include <cstddef>

#include <boost/regex.hpp>

namespace Corvel::Fuzz {

namespace {

using Words = std::deque<std::string>;
using Pair = TakenApart::Pair;

const boost::regex kOption("^(-[a-zA-Z]|--([a-zA-Z][a-zA-Z0-9-]+)(=.+)?)$");
const boost::regex kShort("^-([a-zA-Z])$");
const boost::regex kLong("^--([a-zA-Z][a-zA-Z0-9-]+)$");
const boost::regex kLongWithValue("^--([a-zA-Z][a-zA-Z0-9-]+)=(.+)$");

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string WithoutQuotes(std::string word) {
    word.erase(std::remove(word.begin(), word.end(), '"'), word.end());
    return word;
}

std::string TakeFirst(Words& words) {
    std::string first = words.front();
    words.pop_front();
    return first;
}

bool BeginsWithOption(const Words& words) {
    return !words.empty() && boost::regex_match(words.front(), kOption);
}

/// @param inputSpec  null before the command is known.
void CheckLoneOption(const std::string& name,
                     const CallSpec::InputSpec* inputSpec,
                     std::vector<std::string>& errors) {
    if (inputSpec == nullptr) {
        return;
    }
    for (const auto& parameter : inputSpec->GetParameters()) {
        if (parameter->GetName() == name || parameter->GetShortName() == name) {
            if (parameter->GetType() != CallSpec::ParameterType::Flag &&
                parameter->GetName() != "help") {
                errors.push_back(name + " must have value");
            }
            return;
        }
    }
}

std::vector<Pair> TakeParameters(Words& words,
                                 const CallSpec::InputSpec* inputSpec,
                                 std::vector<std::string>& errors) {
    std::vector<Pair> parameters;
    while (BeginsWithOption(words)) {
        const std::string option = TakeFirst(words);
        boost::smatch groups;
        if (boost::regex_match(option, groups, kLongWithValue)) {
            parameters.emplace_back(groups[1].str(), groups[2].str());
            continue;
        }
        if (!boost::regex_match(option, groups, kShort)) {
            boost::regex_match(option, groups, kLong);
        }
        const std::string name = groups[1].str();
        std::string value;
        if (!words.empty() && !BeginsWithOption(words)) {
            value = TakeFirst(words);
        } else {
            CheckLoneOption(name, inputSpec, errors);
        }
        parameters.emplace_back(name, value);
    }
    return parameters;
}

}  // namespace

Words SplitLikeReference(const std::string& line) {
    Words words;
    std::size_t wordBegin = 0;
    bool isInWord = false;
    bool isInQuotes = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"') {
            isInQuotes = !isInQuotes;
        } else if (!IsBlank(line[i])) {
            if (line[i] == '#' && line.find_first_not_of(" \t") == i) {
                return {};
            }
            isInWord = true;
        } else if (!isInWord) {
            wordBegin = i + 1;
        } else if (!isInQuotes) {
            words.push_back(WithoutQuotes(line.substr(wordBegin, i - wordBegin)));
            while (i + 1 < line.size() && IsBlank(line[i + 1])) {
                ++i;
            }
            wordBegin = i + 1;
        }
    }
    const std::string last = WithoutQuotes(line.substr(wordBegin));
    if (!last.empty()) {
        words.push_back(last);
    }
    return words;
}

TakenApart TakeApart(Words words, const CallSpec::InputSpec& inputSpec) {
    TakenApart result;
    result.dispatcherParameters = TakeParameters(words, nullptr, result.errors);
    while (!words.empty() && !BeginsWithOption(words)) {
        result.path.push_back(TakeFirst(words));
    }
    result.commandParameters = TakeParameters(words, &inputSpec, result.errors);
    if (!words.empty()) {
        std::string error = "Found Extra non-parameter arguments at the end of input: ";
        for (const std::string& word : words) {
            error += "'" + word + "' ";
        }
        result.errors.push_back(error);
    }
    return result;
}

}  // namespace Corvel::Fuzz
