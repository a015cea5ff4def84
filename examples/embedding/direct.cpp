// A host without a command line: runs one command of a descriptor, and keeps what it prints as text.

#include <exception>
#include <iostream>
#include <sstream>
#include <string>

#include <corvel/corvel.h>

using namespace Corvel::AutoCli;

namespace {

int ReportErrors(const CommandOutput& output) {
    for (const std::string& error : output.GetErrors()) {
        std::cerr << error << '\n';
    }
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "Usage: " << argv[0] << " GREETING.XML NAME\n";
        return 1;
    }
    Dispatcher dispatcher;
    try {
        dispatcher.AddPlugin(argv[1]);

        auto input = CommandInput::New();
        input->SetCommandPath({"greeting", "get"});
        input->AddParameter("name", argv[2]);
        auto output = CommandOutput::New();
        if (!dispatcher.ExecuteCommand(input, output)) {
            return ReportErrors(*output);
        }

        FormatParameters parameters = dispatcher.GetDefaultOutputFormatParameters(input, output);
        parameters.SetFormatter("json");
        DisplayContext display;
        std::ostringstream text;
        if (!dispatcher.FormatOutput(output, parameters, display, text)) {
            return ReportErrors(*output);
        }
        std::cout << "The host has these bytes:" << text.str();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
