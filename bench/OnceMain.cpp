// Does one piece of work once, for counting its instructions: only the work itself is counted when
// callgrind runs with --collect-atstart=no.
//
//   bench_once json|xml|table|simple|python [STRUCTURES]    formats to the null device
//   bench_once read [STRUCTURES]                            reads a value document
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <valgrind/callgrind.h>

#include "bench/SampleValues.h"
#include <corvel/corvel.h>

namespace Corvel::Bench {
namespace {

template <typename Work>
void Count(const Work& work) {
    CALLGRIND_TOGGLE_COLLECT;
    work();
    CALLGRIND_TOGGLE_COLLECT;
}

template <typename Formatter>
void Format(std::size_t structures) {
    const auto output = MakeOutput(structures);
    const auto formatter = Formatter::New();
    AutoCli::FormatParameters parameters;
    AutoCli::DisplayContext display;
    std::ofstream nullDevice("/dev/null");
    Count([&] { formatter->Format(output, parameters, display, nullDevice); });
}

void Read(std::size_t structures) {
    const std::string document = MakeDocument(MakeRows(structures));
    Count([&document] { AutoCli::XmlUtil_ParseXmlOutput(document); });
}

}  // namespace
}  // namespace Corvel::Bench

int main(int argc, char** argv) {
    namespace Bench = Corvel::Bench;
    namespace AutoCli = Corvel::AutoCli;
    const std::string kind = argc > 1 ? argv[1] : "";
    const std::size_t structures =
        argc > 2 ? std::strtoul(argv[2], nullptr, 10) : Bench::kStructures;
    if (kind == "json") {
        Bench::Format<AutoCli::JsonFormatter>(structures);
    } else if (kind == "xml") {
        Bench::Format<AutoCli::XmlFormatter>(structures);
    } else if (kind == "table") {
        Bench::Format<AutoCli::TableFormatter>(structures);
    } else if (kind == "simple") {
        Bench::Format<AutoCli::SimpleFormatter>(structures);
    } else if (kind == "python") {
        Bench::Format<AutoCli::PythonFormatter>(structures);
    } else if (kind == "read") {
        Bench::Read(structures);
    } else {
        std::cerr << "usage: bench_once json|xml|table|simple|python|read [STRUCTURES]\n";
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
