#include <cstdlib>
#include <map>

#include "Commands.h"
#include "ProcFile.h"
#include <corvel/callspec/ParameterConstraint.h>
#include <corvel/callspec/ParameterSpec.h>
#include <corvel/metaobj/MetaStruct.h>

namespace HostInfo {

namespace {

using Corvel::AutoCli::Command;
using Corvel::CallSpec::Input;
using Corvel::CallSpec::InputSpec;
using Corvel::CallSpec::Output;
using Corvel::CallSpec::OutputSpec;
using Corvel::CallSpec::ParameterConstraint;
using Corvel::CallSpec::ParameterConstraintType;
using Corvel::CallSpec::ParameterSpec;
using Corvel::CallSpec::ParameterType;
using Corvel::MetaObj::MetaStruct;

/// Fills the structure; with zeros it is the declared shape.
std::shared_ptr<MetaStruct> MakeMemory(const std::map<std::string, long>& kibibytes, long divisor) {
    const auto amount = [&](const char* key) {
        const auto found = kibibytes.find(key);
        return found == kibibytes.end() ? 0L : found->second / divisor;
    };
    auto memory = MetaStruct::New("Memory");
    memory->SetField("Total", amount("MemTotal"));
    memory->SetField("Free", amount("MemFree"));
    memory->SetField("Available", amount("MemAvailable"));
    memory->SetField("Cached", amount("Cached"));
    memory->SetField("Swap Total", amount("SwapTotal"));
    memory->SetField("Swap Free", amount("SwapFree"));
    return memory;
}

class MemoryGetCommand final : public Command {
public:
    MemoryGetCommand() {
        SetDescription("Tell how much memory the host has, in mebibytes.");
        AddExample("", "Show the memory");
        AddExample("--unit KiB", "Show the memory in kibibytes");
        SetDefaultOutputFormatter("simple");
        SetDefaultOutputParameter("fields:Memory",
                                  "Total,Available,Free,Cached,Swap Total,Swap Free");
        SetDefaultOutputParameter("align-fields", "true");
    }

    std::shared_ptr<InputSpec> GetInputSpecInternal() override {
        auto units = ParameterConstraint::New(ParameterConstraintType::StringEnum);
        units->AddStringEnum("KiB", "1024 bytes");
        units->AddStringEnum("MiB", "1024 KiB");
        units->AddStringEnum("GiB", "1024 MiB");
        auto unit = ParameterSpec::New("unit", ParameterType::String);
        unit->SetShortName("u");
        unit->SetDescription("The unit of the amounts, MiB unless given. One of:%FULLENUM%");
        unit->SetConstraint(units);
        unit->SetRequired(false);
        auto spec = InputSpec::New();
        spec->AddParameter(unit);
        return spec;
    }

    std::shared_ptr<OutputSpec> GetOutputSpecInternal() override {
        auto spec = OutputSpec::New();
        spec->SetRootObject(MakeMemory({}, 1));
        spec->SetDescription("The amounts of memory, in the unit asked for.");
        return spec;
    }

    void ExecuteInternal(const std::shared_ptr<Input>& input,
                         const std::shared_ptr<Output>& output) override {
        const std::string& unit = input->GetParameter("unit");
        const long divisor = unit == "KiB" ? 1 : unit == "GiB" ? 1024 * 1024 : 1024;
        std::map<std::string, long> kibibytes;
        for (const auto& [key, value] : ReadKeyValues(ReadProcFile("/proc/meminfo"))) {
            kibibytes[key] = std::strtol(value.c_str(), nullptr, 10);
        }
        output->SetRootObject(MakeMemory(kibibytes, divisor));
    }
};

}  // namespace

std::shared_ptr<Command> NewMemoryGetCommand() {
    return std::make_shared<MemoryGetCommand>();
}

}  // namespace HostInfo
