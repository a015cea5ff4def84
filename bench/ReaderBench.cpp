// Reading a value document of the given number of structures, and libxml2 reading the same text
// into its own tree.
#include <string>

#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include "bench/SampleValues.h"
#include <corvel/corvel.h>

namespace Corvel::Bench {
namespace {

std::string Document(const benchmark::State& state) {
    return MakeDocument(MakeRows(static_cast<std::size_t>(state.range(0))));
}

void SetBytes(benchmark::State& state, std::size_t bytesOfOne) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(bytesOfOne));
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}

/// Freeing the values is part of the time, as freeing the tree is.
void Read(benchmark::State& state) {
    const std::string document = Document(state);
    while (state.KeepRunning()) {
        if (AutoCli::XmlUtil_ParseXmlOutput(document) == nullptr) {
            state.SkipWithError("the document was not read");
        }
    }
    SetBytes(state, document.size());
}

void ReadMemory(benchmark::State& state) {
    const std::string document = Document(state);
    while (state.KeepRunning()) {
        xmlDoc* tree = xmlReadMemory(
            document.data(), static_cast<int>(document.size()), "values", nullptr, XML_PARSE_NONET);
        if (tree == nullptr) {
            state.SkipWithError("the document was not read");
        }
        xmlFreeDoc(tree);
    }
    SetBytes(state, document.size());
}

constexpr auto kFull = static_cast<std::int64_t>(kStructures);

BENCHMARK(Read)->Name("read")->Arg(1'250)->Arg(12'500)->Arg(125'000)->Arg(kFull)->Unit(
    benchmark::kMillisecond);
BENCHMARK(ReadMemory)->Name("read-xmlreadmemory")->Arg(kFull)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace Corvel::Bench

BENCHMARK_MAIN();
