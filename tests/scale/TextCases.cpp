#include <sstream>
#include <string>

#include "tests/scale/Case.h"
#include <corvel/corvel.h>

namespace Corvel::Scale {

namespace {

using CallSpec::ParameterConstraint;
using CallSpec::ParameterConstraintType;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;
using MetaObj::MetaList;
using MetaObj::MetaString;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

/// The text of the CorvelException that the call must raise.
template <typename Call>
std::string Refusal(const Call& call) {
    try {
        call();
    } catch (const CorvelException& e) {
        return e.what();
    }
    return {};
}

void Names(std::size_t bytes) {
    const std::string name(bytes, 'a');
    AutoCli::CliDispatcher dispatcher;
    const auto& root = dispatcher.GetRootNamespace();
    const auto node = root->SubNamespace(name);
    Require(node->GetPathString(' ') == name, "a long name of a namespace");
    Require(Refusal([&] { root->SubNamespace(name + "-"); }).size() > bytes, "a refused name");
    Require(ParameterSpec::New(name, ParameterType::Int)->GetName() == name, "of a parameter");
    Require(Refusal([&] { ParameterSpec::New(name + "_", ParameterType::Int); }).size() > bytes,
            "a refused name of a parameter");
    const auto structure = MetaStruct::New(name);
    structure->SetField(name, 1);
    for (const char* formatter : {"simple", "xml", "json", "python"}) {
        Require(CountLines(structure, {formatter}) >= 1, "names of a type and a field");
    }
    auto list = MetaList::New(MetaType::Struct, structure);
    list->Add(structure);
    Require(CountLines(list, {"table", {"units:" + name + "." + name + "=Mb"}}) == 3, "a column");
    AutoCli::OptionParser parser;
    Require(!parser.ParseString("--" + name + "=1 x --" + name + " 1 --_" + name), "a line");
    Require(parser.GetDispatcherParameter(name).size() == 1 &&
                parser.GetCommandParameter(name).size() == 1,
            "options of that name");
}

void Values(std::size_t bytes) {
    const std::string words(bytes, '<');
    const auto structure = MetaStruct::New("S");
    structure->SetField("text", words);
    structure->SetField("bad", MetaString::NewUtf8WithEscapes(std::string(bytes, '\xff')));
    for (const char* formatter : {"simple", "xml", "json", "python"}) {
        Require(CountLines(structure, {formatter}) >= 1, "a long text");
    }
    Require(CountLines(structure,
                       {"simple",
                        {"header:S=" + std::string(bytes, '%') + "%text%" + std::string(bytes, '%'),
                         "printf:S.text=" + std::string(bytes, ' ') + "%1000000s",
                         "printf:S.bad=%2000000000s",
                         "units:S.text=" + words}}) == 3,
            "a long header, format and unit");
    Require(
        CountLines(structure, {"simple", {"header:S=" + std::string(bytes, 'x') + "%text%"}}) == 3,
        "a header with a long value");
}

void Wrapping(std::size_t bytes) {
    std::string text;
    while (text.size() < bytes) {
        text += "words of a long description ";
    }
    std::ostringstream fitted;
    AutoCli::AutoCli_FitString(4, 80, text, false, fitted, true, 0, true);
    AutoCli::AutoCli_FitString(4, 80, std::string(bytes, ' '), false, fitted, true, 0, true);
    AutoCli::AutoCli_FitString(4, 80, std::string(bytes, '\n'), false, fitted, true, 0, true);
    AutoCli::AutoCli_FitString(4, 80, std::string(bytes, 'x'), false, fitted, true, 0, true);
    Require(fitted.str().size() > 3 * bytes, "four texts");
    const auto structure = MetaStruct::New("S");
    structure->SetField("number", 1);
    structure->SetField("text", text);
    auto list = MetaList::New(MetaType::Struct, structure);
    list->Add(structure);
    Require(CountLines(list, {"table", {"wrap-last=true"}, 20}) > bytes / 40, "a wrapped column");
}

/// Patterns over a long value; a matcher that gives up refuses the value.
void Patterns(std::size_t bytes) {
    const char* const patterns[] = {
        "[a-z]+", "(a|b)*", "(a+)+b", "(?:[a-z]+)*", ".*a.*b.*c", "(.)*\\1"};
    for (const char* pattern : patterns) {
        const auto constraint = ParameterConstraint::New(ParameterConstraintType::StringRegex);
        constraint->SetStringRegex(pattern);
        const auto output = CallSpec::Output::New();
        const bool isValid = constraint->Validate(std::string(bytes, 'a'), "name", output);
        Require(isValid != output->HasError(), "an answer");
    }
    const auto constraint = ParameterConstraint::New(ParameterConstraintType::StringRegex);
    constraint->SetStringRegex(std::string(bytes, 'a'));
    const auto output = CallSpec::Output::New();
    const bool isValid = constraint->Validate(std::string(bytes, 'a'), "name", output);
    Require(isValid != output->HasError(), "an answer for a long pattern");
}

/// A pattern within patterns.
void DeepPattern(std::size_t depth) {
    const auto constraint = ParameterConstraint::New(ParameterConstraintType::StringRegex);
    constraint->SetStringRegex(std::string(depth, '(') + "a" + std::string(depth, ')'));
    const auto output = CallSpec::Output::New();
    std::string refusal;
    try {
        constraint->Validate("a", "name", output);
    } catch (const std::exception& e) {
        refusal = e.what();
    }
    Require(refusal.empty() || refusal.size() > 10, "an answer");
}

}  // namespace

std::span<const Case> TextCases() {
    static constexpr Case kCases[] = {
        {"text-names", Names},
        {"text-values", Values},
        {"text-wrapping", Wrapping},
        {"text-patterns", Patterns},
        {"text-deep-pattern", DeepPattern},
    };
    return kCases;
}

}  // namespace Corvel::Scale
