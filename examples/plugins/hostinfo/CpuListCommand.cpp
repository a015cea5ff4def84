#include <cstdlib>

#include "Commands.h"
#include "ProcFile.h"
#include <corvel/callspec/ParameterSpec.h>
#include <corvel/metaobj/MetaList.h>
#include <corvel/metaobj/MetaStruct.h>

namespace HostInfo {

namespace {

using Corvel::AutoCli::Command;
using Corvel::CallSpec::Input;
using Corvel::CallSpec::InputSpec;
using Corvel::CallSpec::Output;
using Corvel::CallSpec::OutputSpec;
using Corvel::CallSpec::ParameterSpec;
using Corvel::CallSpec::ParameterType;
using Corvel::MetaObj::MetaList;
using Corvel::MetaObj::MetaStruct;
using Corvel::MetaObj::MetaType;

std::shared_ptr<MetaStruct> MakeDefinition() {
    auto definition = MetaStruct::New("Processor");
    definition->SetField("Number", 0L);
    definition->SetField("Vendor", "");
    definition->SetField("Model", "");
    definition->SetField("Cores", 0L);
    return definition;
}

/// One structure a block of /proc/cpuinfo; a block begins with its "processor" line.
std::shared_ptr<MetaList> ReadProcessors() {
    const auto definition = MakeDefinition();
    auto processors = MetaList::New(MetaType::Struct, definition);
    std::shared_ptr<MetaStruct> processor;
    for (const auto& [key, value] : ReadKeyValues(ReadProcFile("/proc/cpuinfo"))) {
        if (key == "processor") {
            processor = MetaStruct::New(definition);
            processor->SetField("Number", std::strtol(value.c_str(), nullptr, 10));
            processor->SetField("Vendor", "");
            processor->SetField("Model", "");
            processor->SetField("Cores", 1L);
            processors->Add(processor);
        } else if (!processor) {
            continue;
        } else if (key == "vendor_id") {
            processor->SetField("Vendor", value);
        } else if (key == "model name") {
            processor->SetField("Model", value);
        } else if (key == "cpu cores") {
            processor->SetField("Cores", std::strtol(value.c_str(), nullptr, 10));
        }
    }
    return processors;
}

class CpuListCommand final : public Command {
public:
    CpuListCommand() {
        SetDescription("List the processors.");
        AddExample("", "List all processors");
        AddExample("--number 0", "Show the first processor");
        SetDefaultOutputFormatter("table");
        SetDefaultOutputParameter("fields:Processor", "Number,Cores,Vendor,Model");
    }

    std::shared_ptr<InputSpec> GetInputSpecInternal() override {
        auto number = ParameterSpec::New("number", ParameterType::IntList);
        number->SetShortName("n");
        number->SetDescription("Show only the processor of this number; can be given often.");
        number->SetRequired(false);
        auto spec = InputSpec::New();
        spec->AddParameter(number);
        return spec;
    }

    std::shared_ptr<OutputSpec> GetOutputSpecInternal() override {
        auto spec = OutputSpec::New();
        spec->SetRootObject(MetaList::New(MetaType::Struct, MakeDefinition()));
        spec->SetDescription("The processors, in the kernel's order.");
        return spec;
    }

    void ExecuteInternal(const std::shared_ptr<Input>& input,
                         const std::shared_ptr<Output>& output) override {
        std::list<long> numbers;
        input->GetParameterIntList("number", numbers);
        auto processors = ReadProcessors();
        for (const long number : numbers) {
            if (number < 0 || number >= static_cast<long>(processors->GetCount())) {
                output->AddErrorMessage("There is no processor " + std::to_string(number));
            }
        }
        if (numbers.empty()) {
            output->SetRootObject(processors);
            return;
        }
        auto chosen = MetaList::New(MetaType::Struct, MakeDefinition());
        for (const long number : numbers) {
            if (number >= 0 && number < static_cast<long>(processors->GetCount())) {
                chosen->Add(processors->GetItem(static_cast<unsigned>(number)));
            }
        }
        output->SetRootObject(chosen);
    }
};

}  // namespace

std::shared_ptr<Command> NewCpuListCommand() {
    return std::make_shared<CpuListCommand>();
}

}  // namespace HostInfo
