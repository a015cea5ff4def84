// Memory, one figure a run.
//
//   bench_memory fields COUNT        bytes of heap for a field value of a list of COUNT structures
//                                    made by a program
//   bench_memory read-fields FILE    the same for the list that reading a value document gives
//   bench_memory read-peak FILE      peak of resident memory that reading adds, over the text's size
//   bench_memory libxml-peak FILE    the same for libxml2's tree
//
// The heap is what malloc says is in use, its own overhead included.
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <memory>
#include <string>
#include <vector>

#include <libxml/parser.h>

#include "bench/OneRun.h"
#include "bench/SampleValues.h"
#include <corvel/corvel.h>

namespace Corvel::Bench {
namespace {

std::size_t HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

double PeakBytes() {
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024;
}

template <typename Make>
double HeapOfField(const Make& make) {
    const std::size_t before = HeapInUse();
    const auto list = std::dynamic_pointer_cast<MetaObj::MetaList>(make());
    return static_cast<double>(HeapInUse() - before) /
           static_cast<double>(list->GetCount() * kFields);
}

template <typename Read>
double PeakOverText(const std::string& text, const Read& read) {
    const double before = PeakBytes();
    read();
    return (PeakBytes() - before) / static_cast<double>(text.size());
}

double HeapOfProgramsList(std::size_t structures) {
    const std::vector<Row> rows = MakeRows(structures);
    return HeapOfField([&rows] { return MakeList(rows); });
}

double MeasureReading(const std::string& kind, const std::string& text) {
    if (kind == "read-fields") {
        return HeapOfField([&text] { return AutoCli::XmlUtil_ParseXmlOutput(text); });
    }
    if (kind == "read-peak") {
        return PeakOverText(text, [&text] { AutoCli::XmlUtil_ParseXmlOutput(text); });
    }
    return PeakOverText(text, [&text] {
        xmlFreeDoc(xmlReadMemory(
            text.data(), static_cast<int>(text.size()), "values", nullptr, XML_PARSE_NONET));
    });
}

}  // namespace
}  // namespace Corvel::Bench

int main(int argc, char** argv) {
    namespace Bench = Corvel::Bench;
    const std::string kind = argc == 3 ? argv[1] : "";
    double figure = 0;
    if (kind == "fields") {
        figure = Bench::HeapOfProgramsList(std::strtoul(argv[2], nullptr, 10));
    } else if (kind == "read-fields" || kind == "read-peak" || kind == "libxml-peak") {
        figure = Bench::MeasureReading(kind, Bench::ReadWholeFile(argv[2]));
    } else {
        std::fputs("usage: bench_memory fields COUNT | read-fields|read-peak|libxml-peak FILE\n",
                   stderr);
        return EXIT_FAILURE;
    }
    std::printf("%.3f\n", figure);
    return EXIT_SUCCESS;
}
