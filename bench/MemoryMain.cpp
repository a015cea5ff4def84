// Memory, one figure a run.
//
//   bench_memory fields              bytes of heap for a field value of a list made by a program
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

#include <libxml/parser.h>

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
    const std::shared_ptr<MetaObj::MetaObject> values = make();
    return static_cast<double>(HeapInUse() - before) / static_cast<double>(kStructures * kFields);
}

template <typename Read>
double PeakOverText(const std::string& text, const Read& read) {
    const double before = PeakBytes();
    read();
    return (PeakBytes() - before) / static_cast<double>(text.size());
}

double Measure(const std::string& kind, const std::string& text) {
    if (kind == "fields") {
        const std::vector<Row> rows = MakeRows(kStructures);
        return HeapOfField([&rows] { return MakeList(rows); });
    }
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
    const std::string kind = argc > 1 ? argv[1] : "";
    if (kind != (argc == 2 ? "fields" : "read-fields") &&
        (argc != 3 || (kind != "read-peak" && kind != "libxml-peak"))) {
        std::fputs("usage: bench_memory fields | read-fields|read-peak|libxml-peak FILE\n", stderr);
        return EXIT_FAILURE;
    }
    const std::string text = argc == 3 ? Corvel::Bench::ReadWholeFile(argv[2]) : "";
    std::printf("%.3f\n", Corvel::Bench::Measure(kind, text));
    return EXIT_SUCCESS;
}
