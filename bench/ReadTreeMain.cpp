// Reads the same text into libxml2's tree, frees it and prints the times of that: the yardstick of
// bench_read_values. It must not map our library.
//
//   bench_read_tree FILE
#include <cstdlib>

#include <libxml/parser.h>

#include "bench/OneRun.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        return EXIT_FAILURE;
    }
    const std::string text = Corvel::Bench::ReadWholeFile(argv[1]);
    Corvel::Bench::TellTimeOf([&text] {
        xmlDoc* tree = xmlReadMemory(
            text.data(), static_cast<int>(text.size()), "values", nullptr, XML_PARSE_NONET);
        const bool read = tree != nullptr;
        xmlFreeDoc(tree);
        return read;
    });
    return EXIT_SUCCESS;
}
