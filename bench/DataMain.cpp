// Writes what scripts/bench measures with. The same arguments always give the same bytes.
//
//   bench_data descriptors COUNT FOLDER   COUNT descriptors of about 13.7 KB with 8 commands each
//   bench_data namespace COUNT FILE       one descriptor with COUNT commands in one namespace
//   bench_data document COUNT FILE        the value document of COUNT structures
//   bench_data cells COUNT FILE           the cells of the same structures, for column -t
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "bench/SampleValues.h"

namespace {

using Corvel::Bench::MakeDocument;
using Corvel::Bench::MakeRows;
using Corvel::Bench::Row;

constexpr std::size_t kCommandsOfDescriptor = 8;

void Write(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    if (!file.write(text.data(), static_cast<std::streamsize>(text.size())).flush()) {
        std::cerr << "cannot write " << path << '\n';
        std::exit(EXIT_FAILURE);
    }
}

/// One command with parameters of several kinds, the shape of its result and a template.
std::string CommandText(const std::string& nameSpace, std::size_t number) {
    const std::string name = "list" + std::to_string(number);
    return "    <command path=\"" + nameSpace + "." + name + R"(">
      <description>List the devices of group )" +
           std::to_string(number) + R"( with their sizes and states.</description>
      <input-spec>
        <parameter name="device" type="string-list" required="false" shortname="d">
          <description>The devices to list; all of them unless one is named.</description>
          <constraint type="regex"><regex>[A-Za-z0-9_./-]+</regex></constraint>
        </parameter>
        <parameter name="state" type="string" required="false" shortname="s">
          <description>Only devices in this state: %ENUM%</description>
          <constraint type="stringenum"><enum>
            <enum-value value="online">in use</enum-value>
            <enum-value value="offline">not in use</enum-value>
          </enum></constraint>
        </parameter>
        <parameter name="depth" type="int" required="false">
          <description>How many levels below each device to list.</description>
          <constraint type="range"><range min="1" max="16"/></constraint>
        </parameter>
        <parameter name="all" type="flag" required="false" shortname="a">
          <description>List hidden devices, too.</description>
        </parameter>
      </input-spec>
      <output-spec>
        <list type="structure"><structure typeName="Device">
          <field name="Name"><string/></field>
          <field name="Size"><int/></field>
          <field name="Online"><bool/></field>
        </structure></list>
      </output-spec>
      <format-parameters>
        <formatter>table</formatter>
      </format-parameters>
      <execute>list-devices $if{depth,--depth '$val{depth}'} $if{all,--all}</execute>
    </command>
)";
}

std::string DescriptorText(const std::string& nameSpace, std::size_t commands) {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<extension>\n  <version>1.0.0</version>\n"
        "  <namespaces>\n    <namespace path=\"" +
        nameSpace +
        "\"><description>Devices of one kind.</description></namespace>\n"
        "  </namespaces>\n  <commands>\n";
    for (std::size_t i = 0; i < commands; ++i) {
        text += CommandText(nameSpace, i);
    }
    return text + "  </commands>\n</extension>\n";
}

void WriteDescriptors(std::size_t count, const std::string& folder) {
    std::filesystem::create_directories(folder);
    for (std::size_t i = 0; i < count; ++i) {
        std::string name = "unit";
        name.append(std::to_string(100'000 + i), 1);
        std::string path = folder;
        path.append("/").append(name).append(".xml");
        Write(path, DescriptorText(name, kCommandsOfDescriptor));
    }
}

std::string Cells(const std::vector<Row>& rows) {
    std::string cells =
        "Blocks\tDevice\tFileSystem\tIdentifier\tMountPoint\tRemovable\tSectorSize\tSerial\n";
    for (const Row& row : rows) {
        cells.append(std::to_string(row.blocks)).append(1, '\t');
        cells.append(row.device).append(1, '\t').append(row.fileSystem).append(1, '\t');
        cells.append(row.identifier).append(1, '\t').append(row.mountPoint).append(1, '\t');
        cells.append(row.removable ? "true\t" : "false\t");
        cells.append(std::to_string(row.sectorSize)).append(1, '\t');
        cells.append(std::to_string(row.serial)).append(1, '\n');
    }
    return cells;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string kind = argc == 4 ? argv[1] : "";
    const std::size_t count = argc == 4 ? std::strtoul(argv[2], nullptr, 10) : 0;
    if (kind == "descriptors") {
        WriteDescriptors(count, argv[3]);
    } else if (kind == "namespace") {
        Write(argv[3], DescriptorText("wide", count));
    } else if (kind == "document") {
        Write(argv[3], MakeDocument(MakeRows(count)));
    } else if (kind == "cells") {
        Write(argv[3], Cells(MakeRows(count)));
    } else {
        std::cerr << "usage: bench_data descriptors|namespace|document|cells COUNT PATH\n";
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
