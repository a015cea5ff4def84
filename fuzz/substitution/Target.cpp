// A command template with the values of a call. The expansion is, for the command line and for the
// standard input, what a slow reference makes of it step by step; and the small text rules are what
// their few lines say.
//
// The input: the template, then a section "name=value" for each value given.

#include <array>
#include <memory>
#include <string>
#include <string_view>
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
constexpr std::string_view kHelp = "help";
/// In the order of substitution: that of names, and then what every command has.
constexpr std::array<Declaration, 7> kDeclarations{{
    {"a-1", ParameterType::Int},
    {"aa", ParameterType::String},
    {"bb", ParameterType::String},
    {"ff", ParameterType::Flag},
    {"ll", ParameterType::StringList},
    {"mm", ParameterType::IntList},
    {"help", ParameterType::Bool},
}};

std::shared_ptr<CallSpec::InputSpec> Declare() {
    auto inputSpec = CallSpec::InputSpec::New();
    for (const auto& [name, type] : kDeclarations) {
        if (name != kHelp) {
            inputSpec->AddParameter(CallSpec::ParameterSpec::New(name, type));
        }
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
    auto input = CallSpec::Input::New();
    for (std::size_t i = 1; i < sections.size(); ++i) {
        const auto [name, value] = SplitPair(sections[i]);
        input->AddParameter(name, value);
    }
    auto command = AutoCli::ExtensionCommand::New();
    command->SetInputSpec(Declare());
    input->SetInputSpec(command->GetInputSpec());
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
