#include <sstream>

#include "Commands.h"
#include "ProcFile.h"
#include <corvel/metaobj/MetaStruct.h>

namespace HostInfo {

namespace {

using Corvel::AutoCli::Command;
using Corvel::CallSpec::Input;
using Corvel::CallSpec::InputSpec;
using Corvel::CallSpec::Output;
using Corvel::CallSpec::OutputSpec;
using Corvel::MetaObj::MetaStruct;

/// The words of /proc/loadavg, as the kernel writes them: "0.20 0.18 0.12 1/80 11206".
struct Load {
    std::string lastMinute;
    std::string lastFiveMinutes;
    std::string lastQuarterHour;
    long running = 0;
    long threads = 0;
};

Load ReadLoad() {
    Load load;
    char slash = 0;
    std::istringstream words(ReadProcFile("/proc/loadavg"));
    words >> load.lastMinute >> load.lastFiveMinutes >> load.lastQuarterHour >> load.running >>
        slash >> load.threads;
    return load;
}

std::shared_ptr<MetaStruct> MakeStructure(const Load& load) {
    auto structure = MetaStruct::New("Load");
    structure->SetField("1 Minute", load.lastMinute);
    structure->SetField("5 Minutes", load.lastFiveMinutes);
    structure->SetField("15 Minutes", load.lastQuarterHour);
    structure->SetField("Running", load.running);
    structure->SetField("Threads", load.threads);
    return structure;
}

class LoadGetCommand final : public Command {
public:
    LoadGetCommand() {
        SetDescription("Tell how busy the host is.");
        AddExample("--formatter json", "Show the load as JSON");
        SetDefaultOutputFormatter("simple");
        SetDefaultOutputParameter("fields:Load", "1 Minute,5 Minutes,15 Minutes,Running,Threads");
        SetDefaultOutputParameter("align-fields", "true");
    }

    std::shared_ptr<InputSpec> GetInputSpecInternal() override { return InputSpec::New(); }

    std::shared_ptr<OutputSpec> GetOutputSpecInternal() override {
        auto spec = OutputSpec::New();
        spec->SetRootObject(MakeStructure(Load()));
        spec->SetDescription("Mean numbers of threads that wanted to run, and threads now.");
        return spec;
    }

    void ExecuteInternal(const std::shared_ptr<Input>& /*input*/,
                         const std::shared_ptr<Output>& output) override {
        output->SetRootObject(MakeStructure(ReadLoad()));
    }
};

}  // namespace

std::shared_ptr<Command> NewLoadGetCommand() {
    return std::make_shared<LoadGetCommand>();
}

}  // namespace HostInfo
