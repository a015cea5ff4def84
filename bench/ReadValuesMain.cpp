// Reads a value document once, frees the values and prints the times of that: what a command line
// does with the output of one extension command.
//
//   bench_read_values FILE
#include <cstdlib>

#include "bench/OneRun.h"
#include <corvel/corvel.h>

int main(int argc, char** argv) {
    if (argc != 2) {
        return EXIT_FAILURE;
    }
    const std::string text = Corvel::Bench::ReadWholeFile(argv[1]);
    Corvel::Bench::TellTimeOf(
        [&text] { return Corvel::AutoCli::XmlUtil_ParseXmlOutput(text) != nullptr; });
    return EXIT_SUCCESS;
}
