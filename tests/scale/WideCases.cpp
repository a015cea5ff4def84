#include <list>
#include <string>
#include <utility>
#include <vector>

#include "tests/scale/Case.h"
#include <corvel/corvel.h>

namespace Corvel::Scale {

namespace {

using AutoCli::CliDispatcher;
using AutoCli::CommandInput;
using AutoCli::CommandOutput;
using AutoCli::ExtensionCommand;
using AutoCli::Namespace;
using AutoCli::OptionParser;
using CallSpec::InputSpec;
using CallSpec::OutputSpec;
using CallSpec::ParameterConstraint;
using CallSpec::ParameterConstraintType;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;
using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

std::string Name(std::size_t i) {
    return "name" + std::to_string(i);
}

/// The numbers below `count` in an order that is neither ascending nor descending.
std::size_t Shuffled(std::size_t i, std::size_t count) {
    return i * 7919 % count;  // 7919 is a prime that divides no count used here
}

std::shared_ptr<MetaStruct> MakeFields(std::size_t count) {
    auto structure = MetaStruct::New("S");
    for (std::size_t i = 0; i < count; ++i) {
        structure->SetField(Name(Shuffled(i, count)), static_cast<long>(i));
    }
    return structure;
}

void Fields(std::size_t count) {
    const auto structure = MakeFields(count);
    Require(structure->GetFieldNames().size() == count, "every field");
    Require(structure->IsSameStructure(MakeFields(count)), "two alike are the same structure");
    const auto copy = MetaStruct::New(structure);
    for (std::size_t i = count; i > 0; --i) {
        copy->SetField(Name(i - 1), structure->GetField(Name(i - 1)));
        copy->SetField(Name(i - 1), structure->GetField(Name(i - 1)), "documented");
    }
    Require(copy->MatchesStructureDefinition(), "one is as its definition says");
    const auto other = MakeFields(count);
    for (std::size_t i = 0; i < count; ++i) {
        other->RemoveField(Name(i));
    }
    Require(other->GetFieldNames().empty(), "no field is left");
}

void FieldsFormatted(std::size_t count) {
    const auto structure = MakeFields(count);
    for (const char* formatter : {"simple", "xml", "json"}) {
        Require(CountLines(structure, {formatter}) >= count, "a line for each field");
    }
    Require(CountLines(structure, {"python"}) == 1, "one line");
    Require(CountLines(structure, {"simple", {"align-fields=true", "printf:S.name1=%5ld"}}) > count,
            "a line for each field, aligned");
}

void Columns(std::size_t count) {
    auto list = MetaList::New(MetaType::Struct, MakeFields(count));
    list->Add(MakeFields(count));
    std::string fields = "fields=" + Name(0);
    for (std::size_t i = 1; i < count; ++i) {
        fields += ", " + Name(i);
    }
    Require(CountLines(list, {"table"}) == 3, "a row of all fields");
    Require(CountLines(list, {"table", {fields, "units:S.name7=Mb", "wrap-last=true"}, 80}) == 3,
            "a row of the chosen fields");
}

void Scalars(std::size_t count) {
    const auto list = MetaList::New(MetaType::Int);
    for (std::size_t i = 0; i < count; ++i) {
        list->Add(static_cast<long>(i));
    }
    const auto structure = MetaStruct::New("S");
    structure->SetField("list", list);
    structure->SetField("text", list->ToString());
    for (const char* formatter : {"simple", "xml", "json", "python"}) {
        Require(CountLines(structure, {formatter}) >= 1, "a list of numbers");
    }
    while (list->GetCount() > count / 2) {
        list->Delete(static_cast<std::uint32_t>(list->GetCount() - 1));
    }
}

void Nodes(std::size_t count) {
    CliDispatcher dispatcher;
    const auto root = dispatcher.GetRootNamespace();
    const auto wide = root->SubNamespace("wide");
    for (std::size_t i = 0; i < count; ++i) {
        const auto command = ExtensionCommand::New();
        command->SetDescription("One of many.");
        wide->RegisterNamespaceNode(command, Name(Shuffled(i, count)));
    }
    Require(wide->GetNamespaceNodeNames().size() == count, "every node");
    dispatcher.PrintChildren(wide, CommandOutput::New());
    const auto input = CommandInput::New();
    const auto output = CommandOutput::New();
    input->SetCommandPath({"quorcli", "command", "list"});
    Require(dispatcher.ExecuteCommand(input, output), "the list of commands");
    Require(CountLines(output->GetRootObject(), {"table"}) == count + 3, "a line for each command");
    dispatcher.ResetRegistrations();
}

std::shared_ptr<InputSpec> MakeSpec(std::size_t count, ParameterType type) {
    auto spec = InputSpec::New();
    for (std::size_t i = 0; i < count; ++i) {
        const auto parameter = ParameterSpec::New(Name(Shuffled(i, count)), type);
        parameter->SetDescription("One of many.");
        parameter->SetRequired(i % 2 == 0);
        spec->AddParameter(parameter);
    }
    return spec;
}

/// A command that runs nothing; its help is asked for.
std::shared_ptr<ExtensionCommand> MakeCommand(const std::shared_ptr<InputSpec>& spec,
                                              const std::string& text) {
    auto command = ExtensionCommand::New();
    command->SetInputSpec(spec);
    auto outputSpec = OutputSpec::New();
    outputSpec->SetRootObject(MetaInt::New());
    command->SetOutputSpec(outputSpec);
    command->SetExecuteCommand(text);
    command->SetStdin(text);
    return command;
}

/// Declared, given on a command line, held against the declaration, and shown as help.
void Parameters(std::size_t count) {
    CliDispatcher dispatcher;
    const auto spec = MakeSpec(count, ParameterType::Flag);
    const auto command = MakeCommand(spec, "exit");
    dispatcher.GetRootNamespace()->RegisterNamespaceNode(command, "run");
    std::vector<std::string> words{"run"};
    for (std::size_t i = 0; i < count; ++i) {
        words.push_back("--" + Name(i));
    }
    OptionParser parser;
    parser.ParseVector(words);
    parser.SetInputSpec(command->GetInputSpec());
    const auto input = CommandInput::New();
    for (const auto& [name, value] : parser.GetCommandParameters()) {
        input->AddParameter(name, value);
    }
    Require(parser.GetParseErrors().empty(), "flags need no values");
    const auto output = CommandOutput::New();
    input->SetInputSpec(spec);
    Require(spec->Validate(input, output), "all is as declared");
    Require(!spec->Validate(CommandInput::New(), output), "half of all are missing");
    OptionParser help;
    help.ParseVector({"run", "--help"});
    Require(dispatcher.HandleOptions(help, false), "the help");
}

/// Values of one parameter, and of one that refuses them all.
void Values(std::size_t count) {
    const auto spec = MakeSpec(1, ParameterType::StringList);
    std::vector<std::string> words{"run"};
    for (std::size_t i = 0; i < count; ++i) {
        words.emplace_back("--name0");
        words.push_back(std::to_string(i));
    }
    OptionParser parser;
    parser.ParseVector(words);
    parser.SetInputSpec(spec);
    const auto input = CommandInput::New();
    for (const auto& [name, value] : parser.GetCommandParameters()) {
        input->AddParameter(name, value);
    }
    input->SetInputSpec(spec);
    const auto output = CommandOutput::New();
    Require(spec->Validate(input, output) && !output->HasError(), "every value is valid");
    const auto command = MakeCommand(
        spec, "false $multilist{name0,--name,true} $list{name0,',',true} $list{name0,'',false}");
    Require(command->SubstituteInput(input, false).size() > 10 * count, "every value three times");
    command->Execute(input, output);
    Require(output->HasError(), "an outcome");

    const auto refusing = CommandOutput::New();
    const auto bools = MakeSpec(1, ParameterType::BoolList);
    Require(!bools->Validate(input, refusing) && refusing->GetErrors().size() == count - 2,
            "a message for each value but 0 and 1");
}

void Enumeration(std::size_t count) {
    const auto constraint = ParameterConstraint::New(ParameterConstraintType::StringEnum);
    const auto numbers = ParameterConstraint::New(ParameterConstraintType::IntEnum);
    for (std::size_t i = 0; i < count; ++i) {
        constraint->AddStringEnum(Name(i), "One of many.");
        numbers->AddIntEnum(static_cast<long>(i));
    }
    const auto output = CommandOutput::New();
    for (std::size_t i = 0; i < count; ++i) {
        Require(constraint->Validate(Name(i), "name", output) &&
                    numbers->Validate(std::to_string(i), "name", output),
                "a value of the set");
    }
    Require(!constraint->Validate("other", "name", output), "no other value");
    const auto parameter = ParameterSpec::New("name", ParameterType::String);
    parameter->SetDescription("One of %ENUM%: %FULLENUM%");
    parameter->SetConstraint(constraint);
    Require(parameter->GetDescription(true).size() > 20 * count, "a description of all");
}

/// Tokens of every kind, one after the other; then also through the check of the line, which no
/// shell takes in the end.
void Tokens(std::size_t count) {
    constexpr auto spec = ParameterType::StringList;
    constexpr auto single = ParameterType::String;
    constexpr std::pair<ParameterType, const char*> templates[] = {
        {single, "$val{name0} "},
        {single, "'$val{name0}' \"$val{name0}\" "},
        {single, "$if{name0,--x $val{name0}} "},
        {single, "$if{other,--x $val{name0}} "},
        {single, "$if{other,"},
        {single, "$val{name0"},
        {single, "$"},
        {single, "{"},
        {single, "}"},
        {single, "; case $val{name0} in x) ;; esac"},
        {single, " <<E$val{name0}\n$val{name0}\nE\n"},
        {single, "x() { $val{name0}; }; "},
        {single, "x=$val{name0} sh -c true; env sh -c $val{name0}; | sh "},
        {spec, "$list{name0,',',true} "},
        {spec, "$list{name0,'"},
        {spec, "$multilist{name0,--x,false} "},
        {spec, "$multilist{name0,"},
        {spec, "$multilist{name0,--x,"},
    };
    for (const auto& [type, token] : templates) {
        const auto declared = MakeSpec(1, type);
        const auto command =
            MakeCommand(declared, "false $" + Repeated(token, count) + TooLongForShell());
        const auto input = CommandInput::New();
        input->SetInputSpec(declared);
        input->AddParameter("name0", "value");
        Require(!command->SubstituteInput(input, false).empty(), "an expansion");
        const auto output = CommandOutput::New();
        command->Execute(input, output);
        Require(output->HasError(), "an outcome");
    }
}

void Errors(std::size_t count) {
    CliDispatcher dispatcher;
    const auto output = CommandOutput::New();
    for (std::size_t i = 0; i < count; ++i) {
        output->AddErrorMessage("Problem number " + std::to_string(i));
    }
    dispatcher.PrintError(output);
    Require(output->GetErrors().size() == count, "every message");
}

void Words(std::size_t count) {
    std::string line = Repeated("ab ", count) + Repeated("--xx \"a b\" ", count);
    OptionParser parser;
    Require(!parser.ParseString(line) && parser.GetCommandPath().size() == count, "a long path");
    Require(parser.GetCommandParameters().size() == count, "many options");
    OptionParser other;
    Require(!other.ParseString(Repeated("--xx 1 ", count) + "a --bb " + Repeated("c ", count)),
            "a line");
    Require(other.GetDispatcherParameters().size() == count, "many options before the path");
    Require(other.GetCommandParameters().size() == 1 && other.GetParseErrors().size() == 1,
            "words that belong to no option");
    Require(other.ToString().size() > count, "a text of it");
}

void FormatParameterKeys(std::size_t count) {
    AutoCli::FormatParameters parameters;
    AutoCli::FormatParameters others;
    for (std::size_t i = 0; i < count; ++i) {
        parameters.SetParameter("units:S." + Name(i), "Mb");
        others.SetParameter("printf:S." + Name(i), "%ld");
    }
    parameters.OverrideValues(others);
    Require(parameters.GetParameters().size() == 2 * count, "every key");
    std::vector<std::string> texts;
    for (const auto& [key, value] : parameters.GetParameters()) {
        texts.push_back(key + "=" + value);
    }
    Require(CountLines(MakeFields(count), {"simple", texts}) == count + 1, "a line for each field");
}

}  // namespace

std::span<const Case> WideCases() {
    static constexpr Case kCases[] = {
        {"fields", Fields},
        {"fields-formatted", FieldsFormatted},
        {"columns", Columns},
        {"scalars", Scalars},
        {"nodes", Nodes},
        {"parameters", Parameters},
        {"values", Values},
        {"enumeration", Enumeration},
        {"tokens", Tokens},
        {"errors", Errors},
        {"words", Words},
        {"format-parameters", FormatParameterKeys},
    };
    return kCases;
}

}  // namespace Corvel::Scale
