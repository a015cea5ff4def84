// The formatters and their yardsticks. Every benchmark writes the same values to the null device;
// bytes per second count what it wrote itself. The argument is the number of structures.
//
// CORVEL_BENCH_CELLS names the file of cells for column -t.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <rapidjson/document.h>
#include <rapidjson/filewritestream.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <sstream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <libxml/xmlwriter.h>

#include "bench/ChildRun.h"
#include "bench/SampleValues.h"
#include <corvel/corvel.h>

namespace Corvel::Bench {
namespace {

using AutoCli::DisplayContext;
using AutoCli::FormatParameters;

std::size_t Structures(const benchmark::State& state) {
    return static_cast<std::size_t>(state.range(0));
}

void SetBytes(benchmark::State& state, std::size_t bytesOfOne) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(bytesOfOne));
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}

template <typename Formatter>
void Format(benchmark::State& state) {
    const auto output = MakeOutput(Structures(state));
    const auto formatter = Formatter::New();
    FormatParameters parameters;
    DisplayContext display;
    std::ofstream nullDevice("/dev/null");
    while (state.KeepRunning()) {
        formatter->Format(output, parameters, display, nullDevice);
        nullDevice.flush();
    }
    std::ostringstream text;
    formatter->Format(output, parameters, display, text);
    SetBytes(state, text.str().size());
}

rapidjson::Document MakeJson(const std::vector<Row>& rows) {
    rapidjson::Document document(rapidjson::kArrayType);
    auto& allocator = document.GetAllocator();
    const auto text = [&allocator](const std::string& value) {
        return rapidjson::Value(
            value.c_str(), static_cast<rapidjson::SizeType>(value.size()), allocator);
    };
    document.Reserve(static_cast<rapidjson::SizeType>(rows.size()), allocator);
    for (const Row& row : rows) {
        rapidjson::Value object(rapidjson::kObjectType);
        object.AddMember("Blocks", rapidjson::Value(static_cast<int64_t>(row.blocks)), allocator);
        object.AddMember("Device", text(row.device), allocator);
        object.AddMember("FileSystem", text(row.fileSystem), allocator);
        object.AddMember("Identifier", text(row.identifier), allocator);
        object.AddMember("MountPoint", text(row.mountPoint), allocator);
        object.AddMember("Removable", rapidjson::Value(row.removable), allocator);
        object.AddMember(
            "SectorSize", rapidjson::Value(static_cast<int64_t>(row.sectorSize)), allocator);
        object.AddMember("Serial", rapidjson::Value(static_cast<int64_t>(row.serial)), allocator);
        document.PushBack(object, allocator);
    }
    return document;
}

void RapidJson(benchmark::State& state) {
    const rapidjson::Document document = MakeJson(MakeRows(Structures(state)));
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> nullDevice(std::fopen("/dev/null", "we"),
                                                                     std::fclose);
    std::vector<char> buffer(65536);
    while (state.KeepRunning()) {
        rapidjson::FileWriteStream stream(nullDevice.get(), buffer.data(), buffer.size());
        rapidjson::PrettyWriter<rapidjson::FileWriteStream> writer(stream);
        document.Accept(writer);
    }
    rapidjson::StringBuffer text;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(text);
    document.Accept(writer);
    SetBytes(state, text.GetSize());
}

const xmlChar* Xml(const char* text) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): libxml2's texts are unsigned
    return reinterpret_cast<const xmlChar*>(text);
}

void WriteField(xmlTextWriter* writer, const char* name, const char* tag, const char* text) {
    xmlTextWriterStartElement(writer, Xml("field"));
    xmlTextWriterWriteAttribute(writer, Xml("name"), Xml(name));
    xmlTextWriterWriteElement(writer, Xml(tag), Xml(text));
    xmlTextWriterEndElement(writer);
}

void WriteRows(xmlTextWriter* writer, const std::vector<Row>& rows) {
    xmlTextWriterSetIndent(writer, 1);
    xmlTextWriterSetIndentString(writer, Xml("   "));
    xmlTextWriterStartDocument(writer, nullptr, nullptr, nullptr);
    xmlTextWriterStartElement(writer, Xml("output"));
    xmlTextWriterStartElement(writer, Xml("list"));
    xmlTextWriterWriteAttribute(writer, Xml("type"), Xml("structure"));
    for (const Row& row : rows) {
        xmlTextWriterStartElement(writer, Xml("structure"));
        xmlTextWriterWriteAttribute(writer, Xml("typeName"), Xml("Disk"));
        WriteField(writer, "Blocks", "integer", std::to_string(row.blocks).c_str());
        WriteField(writer, "Device", "string", row.device.c_str());
        WriteField(writer, "FileSystem", "string", row.fileSystem.c_str());
        WriteField(writer, "Identifier", "string", row.identifier.c_str());
        WriteField(writer, "MountPoint", "string", row.mountPoint.c_str());
        WriteField(writer, "Removable", "boolean", row.removable ? "true" : "false");
        WriteField(writer, "SectorSize", "integer", std::to_string(row.sectorSize).c_str());
        WriteField(writer, "Serial", "integer", std::to_string(row.serial).c_str());
        xmlTextWriterEndElement(writer);
    }
    xmlTextWriterEndDocument(writer);
}

void XmlTextWriter(benchmark::State& state) {
    const std::vector<Row> rows = MakeRows(Structures(state));
    while (state.KeepRunning()) {
        xmlTextWriter* writer = xmlNewTextWriterFilename("/dev/null", 0);
        WriteRows(writer, rows);
        xmlFreeTextWriter(writer);
    }
    xmlBuffer* text = xmlBufferCreate();
    xmlTextWriter* writer = xmlNewTextWriterMemory(text, 0);
    WriteRows(writer, rows);
    xmlFreeTextWriter(writer);
    SetBytes(state, static_cast<std::size_t>(xmlBufferLength(text)));
    xmlBufferFree(text);
}

/// The processor time of the whole process, which reads the same cells from a file.
void ColumnT(benchmark::State& state) {
    const char* cells = std::getenv("CORVEL_BENCH_CELLS");
    if (cells == nullptr) {
        state.SkipWithError("CORVEL_BENCH_CELLS names no file of cells");
        return;
    }
    while (state.KeepRunning()) {
        state.SetIterationTime(RunChild({"column", "-t", "-s", "\t"}, 0, cells).cpuSeconds);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}

constexpr auto kFull = static_cast<std::int64_t>(kStructures);

// 10^4, 10^5 and 10^6 values: their times for one structure show how the work grows.
void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(1'250)->Arg(12'500)->Arg(125'000)->Arg(kFull)->Unit(benchmark::kMillisecond);
}

BENCHMARK_TEMPLATE(Format, AutoCli::JsonFormatter)->Name("json")->Apply(Sizes);
BENCHMARK(RapidJson)->Name("json-rapidjson")->Arg(kFull)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(Format, AutoCli::XmlFormatter)->Name("xml")->Apply(Sizes);
BENCHMARK(XmlTextWriter)->Name("xml-textwriter")->Arg(kFull)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(Format, AutoCli::TableFormatter)->Name("table")->Apply(Sizes);
BENCHMARK(ColumnT)
    ->Name("table-column")
    ->Arg(kFull)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(Format, AutoCli::SimpleFormatter)->Name("simple")->Apply(Sizes);
BENCHMARK_TEMPLATE(Format, AutoCli::PythonFormatter)->Name("python")->Apply(Sizes);

}  // namespace
}  // namespace Corvel::Bench

BENCHMARK_MAIN();
