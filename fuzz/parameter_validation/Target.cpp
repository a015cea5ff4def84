// A parameter with a constraint, and values for it. What it accepts, what it tells about what it
// refuses, how it describes itself: all as a plain reference has it, and the same the second time.
//
// The input: a section of lines "name=..", "type=N", "description=..", "constraint=N", "range=MIN,MAX",
// "int=N", "text=value,description", "pattern=..", then a section for each value.

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "corvel/corvel.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/parameter_validation/Reference.h"
#include "fuzz/support/InputText.h"

namespace {

using namespace Corvel;
using namespace Corvel::Fuzz;
using CallSpec::ParameterConstraint;
using CallSpec::ParameterConstraintType;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;

constexpr long kLastType = static_cast<long>(ParameterType::BoolList);
constexpr long kLastConstraint = static_cast<long>(ParameterConstraintType::StringRegex);

/// @return the text of the exception; empty when there was none.
template <typename Action>
std::string Refusal(Action action) {
    try {
        action();
    } catch (const CorvelException& exception) {
        return exception.what();
    }
    return {};
}

std::pair<std::string, std::string> SplitAtComma(const std::string& text) {
    const std::size_t comma = std::min(text.find(','), text.size());
    return {text.substr(0, comma), text.substr(std::min(comma + 1, text.size()))};
}

void SetRange(Declared& declared, ParameterConstraint& constraint, const std::string& bounds) {
    const auto [first, second] = SplitAtComma(bounds);
    const long min = std::strtol(first.c_str(), nullptr, 10);
    const long max = std::strtol(second.c_str(), nullptr, 10);
    const std::string refusal = Refusal([&] { constraint.SetIntRange(min, max); });
    Promise(refusal == (min > max ? "Invalid values for SetIntRange, constraints must have a min "
                                    "value <= max value"
                                  : ""),
            "a range is refused when its bounds are the wrong way round");
    if (min <= max) {
        declared.min = min;
        declared.max = max;
    }
}

void AddInteger(Declared& declared, ParameterConstraint& constraint, long integer) {
    const bool isNew = Refusal([&] { constraint.AddIntEnum(integer); }).empty();
    Promise(isNew == (std::find(declared.integers.begin(), declared.integers.end(), integer) ==
                      declared.integers.end()),
            "an integer is refused when it is there");
    if (isNew) {
        declared.integers.push_back(integer);
    }
}

void AddText(Declared& declared, ParameterConstraint& constraint, const std::string& line) {
    const auto [value, description] = SplitAtComma(line);
    const std::string refusal = Refusal(
        [&, &text = value, &words = description] { constraint.AddStringEnum(text, words); });
    const bool isNew =
        std::find(declared.texts.begin(), declared.texts.end(), value) == declared.texts.end();
    Promise(refusal == (isNew ? ""
                              : CorvelException("Duplicate Value found in "
                                                "ParameterConstraint::AddStringEnum: " +
                                                value)
                                    .what()),
            "a text is refused when it is there");
    if (isNew) {
        declared.texts.push_back(value);
        if (!description.empty()) {
            declared.descriptions[value] = description;
        }
    }
}

/// Reads the declaration, and declares what it says.
std::shared_ptr<ParameterConstraint> ReadDeclaration(const std::string& section,
                                                     Declared& declared) {
    std::vector<std::pair<std::string, std::string>> pairs;
    for (const std::string& line : SplitLines(section)) {
        auto [key, value] = SplitPair(line);
        if (key == "constraint") {
            declared.constraint =
                static_cast<ParameterConstraintType>(ToNumber(value, 0, kLastConstraint));
        } else if (key == "type") {
            declared.type = static_cast<ParameterType>(ToNumber(value, 0, kLastType));
        } else {
            pairs.emplace_back(key, FromCarets(value));
        }
    }
    auto constraint = ParameterConstraint::New(declared.constraint);
    for (const auto& [key, value] : pairs) {
        if (key == "name") {
            declared.name = value;
        } else if (key == "description") {
            declared.description = value;
        } else if (key == "pattern") {
            declared.pattern = value;
            constraint->SetStringRegex(value);
        } else if (key == "range") {
            SetRange(declared, *constraint, value);
        } else if (key == "int") {
            AddInteger(declared, *constraint, std::strtol(value.c_str(), nullptr, 10));
        } else if (key == "text") {
            AddText(declared, *constraint, value);
        }
    }
    return constraint;
}

/// What checking the values came to, in words: also when the pattern is none.
template <typename Check>
std::string Outcome(Check check) {
    std::list<std::string> errors;
    std::string outcome;
    try {
        outcome = check(errors) ? "accepted" : "refused";
    } catch (const std::exception& exception) {
        return std::string("raised ") + exception.what();
    }
    for (const std::string& error : errors) {
        outcome += "\n" + error;
    }
    return outcome;
}

std::string Validate(const ParameterSpec& parameter, const std::list<std::string>& values) {
    return Outcome([&](std::list<std::string>& errors) {
        auto output = CallSpec::Output::New();
        const bool isSound = parameter.Validate(values, output);
        errors = output->GetErrors();
        return isSound;
    });
}

void CheckConversions(const std::string& text) {
    long number = 17;
    long expectedNumber = 17;
    Promise(ParameterSpec::GetInt(text, number) == ReadWholeInteger(text, expectedNumber) &&
                number == expectedNumber,
            "an integer is read digit by digit");
    bool truth = false;
    bool expectedTruth = false;
    Promise(ParameterSpec::GetBool(text, truth) == ReadBoolWord(text, expectedTruth) &&
                truth == expectedTruth,
            "a bool is one of the words");
}

std::shared_ptr<ParameterSpec> Declare(const Declared& declared) {
    std::shared_ptr<ParameterSpec> parameter;
    const std::string refusal =
        Refusal([&] { parameter = ParameterSpec::New(declared.name, declared.type); });
    Promise(refusal == (IsParameterName(declared.name)
                            ? ""
                            : CorvelException("Invalid Parameter name '" + declared.name +
                                              "' parameter names can only contain lower-case "
                                              "alphanumeric characters, numbers and '-'")
                                  .what()),
            "a name is refused when it has other characters");
    return parameter == nullptr ? ParameterSpec::New("name", declared.type) : parameter;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> sections = SplitSections(ToText(data, size), 1);
    const std::list<std::string> values(sections.begin() + 1, sections.end());
    Declared declared;
    const std::shared_ptr<ParameterConstraint> constraint =
        ReadDeclaration(sections.front(), declared);
    Promise(constraint->ToString() == ConstraintText(declared), "a constraint is told in words");

    const std::shared_ptr<ParameterSpec> parameter = Declare(declared);
    declared.name = parameter->GetName();
    parameter->SetDescription(declared.description);
    declared.isConstrained = Refusal([&] { parameter->SetConstraint(constraint); }).empty();
    Promise(declared.isConstrained == Fits(declared.type, declared.constraint),
            "a constraint is refused when it does not fit");
    Promise(parameter->GetDescription(true) == ExpandedDescription(declared),
            "placeholders are replaced once");
    Promise(parameter->GetDescription(false) == declared.description, "a description is kept");

    const std::string expected = Outcome(
        [&](std::list<std::string>& errors) { return CheckValues(declared, values, errors); });
    Promise(Validate(*parameter, values) == expected, "values are checked as the reference does");
    Promise(Validate(*parameter, values) == expected, "the second check is as the first");
    for (const std::string& value : values) {
        CheckConversions(value);
    }
    return 0;
}
