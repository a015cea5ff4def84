// A command template with the values of a call. The expansion is, for the command line and for the
// standard input, what a slow reference makes of it step by step; and the small text rules are what
// their few lines say.
//
// The input: the template, then a section "name=value" for each value given.

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "corvel/corvel.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/substitution/Reference.h"
#include "fuzz/support/InputText.h"

namespace {

using namespace Corvel;
using namespace Corvel::Fuzz;
using CallSpec::ParameterType;

struct Declaration {
    const char* name;
    ParameterType type;
};
/// In the order of names, which is the order of substitution.
constexpr std::array<Declaration, 6> kDeclarations{{
    {"a-1", ParameterType::Int},
    {"aa", ParameterType::String},
    {"bb", ParameterType::String},
    {"ff", ParameterType::Flag},
    {"ll", ParameterType::StringList},
    {"mm", ParameterType::IntList},
}};

std::shared_ptr<CallSpec::InputSpec> Declare() {
    auto inputSpec = CallSpec::InputSpec::New();
    for (const Declaration& declaration : kDeclarations) {
        inputSpec->AddParameter(CallSpec::ParameterSpec::New(declaration.name, declaration.type));
    }
    return inputSpec;
}

std::vector<GivenParameter> ToGiven(const CallSpec::Input& input) {
    std::vector<GivenParameter> given;
    for (const auto& [name, type] : kDeclarations) {
        if (input.HasParameter(name)) {
            const bool isList = type == ParameterType::StringList || type == ParameterType::IntList;
            given.push_back(
                {name, input.GetParameters().at(name), isList, type == ParameterType::Flag});
        }
    }
    return given;
}

template <typename Expansion>
std::string TextOrRefusal(Expansion expand) {
    try {
        return "= " + expand();
    } catch (const CorvelException& exception) {
        return std::string("! ") + exception.what();
    }
}

void CheckTextRules(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        escaped.append(AutoCli::isBadChar(c) ? "\\" : "").append(1, c);
    }
    Promise(AutoCli::SanitizeInput(text) == escaped, "bad characters are escaped");
    Promise(AutoCli::SanitizeChar(text, '\'').find('\'') == std::string::npos,
            "an unwanted character is gone");
    for (std::size_t start = 0; start < text.size(); start += 1 + text.size() / 8) {
        const auto [begin, size] =
            AutoCli::FindPairedTokenSize(text.data(), start, text.size(), '{', '}');
        Promise(begin == start && size == PairedSize(text, start, '{', '}'),
                "braces are paired as the reference does");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> sections = SplitSections(ToText(data, size), 1);
    const std::string& text = sections.front();
    const std::shared_ptr<CallSpec::InputSpec> inputSpec = Declare();
    auto input = CallSpec::Input::New();
    for (std::size_t i = 1; i < sections.size(); ++i) {
        const auto [name, value] = SplitPair(sections[i]);
        input->AddParameter(name, value);
    }
    input->SetInputSpec(inputSpec);
    auto command = AutoCli::ExtensionCommand::New();
    command->SetInputSpec(inputSpec);
    command->SetExecuteCommand(text);
    command->SetStdin(text);

    for (const bool forStdin : {false, true}) {
        const std::string expanded =
            TextOrRefusal([&] { return command->SubstituteInput(input, forStdin); });
        const std::string expected =
            TextOrRefusal([&] { return ExpandTemplate(text, ToGiven(*input), forStdin); });
        Promise(expanded == expected, "the template expands as the reference does");
    }
    CheckTextRules(text);
    return 0;
}
