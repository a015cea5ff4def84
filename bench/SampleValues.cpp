#include "bench/SampleValues.h"

#include <array>

#include <corvel/corvel.h>

namespace Corvel::Bench {

namespace {

std::string Padded(std::size_t number, std::size_t width) {
    std::string digits = std::to_string(number);
    return std::string(width > digits.size() ? width - digits.size() : 0, '0') + digits;
}

Row MakeRow(std::size_t i) {
    static const std::array<std::string, 4> kFileSystems{"ext4", "xfs", "btrfs", "vfat"};
    Row row;
    row.blocks = static_cast<long>(i * 7919 % 1'000'000'007);
    row.device = "/dev/nvme" + Padded(i, 6) + "n1";
    row.fileSystem = kFileSystems[i % kFileSystems.size()];
    row.identifier = "b3f1c2d4-" + Padded(i, 8);
    row.mountPoint = (i % 50 == 0 ? "/srv/a & b " : "/srv/a or b ") + std::to_string(i);
    row.removable = i % 3 == 0;
    row.sectorSize = i % 2 == 0 ? 512 : 4096;
    row.serial = static_cast<long>(i) * 2'654'435'761 - 1'000'000'000'000;
    return row;
}

void AppendText(std::string& document, const char* name, const std::string& text) {
    document.append("<field name=\"").append(name).append("\"><string>");
    for (const char c : text) {
        c == '&' ? document.append("&amp;") : document.append(1, c);
    }
    document.append("</string></field>");
}

void AppendInt(std::string& document, const char* name, long number) {
    document.append("<field name=\"").append(name).append("\"><int>");
    document.append(std::to_string(number)).append("</int></field>");
}

}  // namespace

std::vector<Row> MakeRows(std::size_t count) {
    std::vector<Row> rows;
    rows.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        rows.push_back(MakeRow(i));
    }
    return rows;
}

std::shared_ptr<MetaObj::MetaList> MakeList(const std::vector<Row>& rows) {
    const auto definition = MetaObj::MetaStruct::New("Disk");
    definition->SetField("Blocks", 0);
    definition->SetField("Device", "");
    definition->SetField("FileSystem", "");
    definition->SetField("Identifier", "");
    definition->SetField("MountPoint", "");
    definition->SetField("Removable", false);
    definition->SetField("SectorSize", 0);
    definition->SetField("Serial", 0);
    auto list = MetaObj::MetaList::New(MetaObj::MetaType::Struct, definition);
    list->Reserve(rows.size());
    for (const Row& row : rows) {
        const auto structure = MetaObj::MetaStruct::New(definition);
        structure->SetField("Blocks", row.blocks);
        structure->SetField("Device", row.device);
        structure->SetField("FileSystem", row.fileSystem);
        structure->SetField("Identifier", row.identifier);
        structure->SetField("MountPoint", row.mountPoint);
        structure->SetField("Removable", row.removable);
        structure->SetField("SectorSize", row.sectorSize);
        structure->SetField("Serial", row.serial);
        list->Add(structure);
    }
    return list;
}

std::shared_ptr<CallSpec::Output> MakeOutput(std::size_t count) {
    auto output = CallSpec::Output::New();
    output->SetRootObject(MakeList(MakeRows(count)));
    return output;
}

std::string MakeDocument(const std::vector<Row>& rows) {
    std::string document = "<?xml version=\"1.0\"?>\n<output>\n  <list type=\"structure\">\n";
    for (const Row& row : rows) {
        document.append("<structure typeName=\"Disk\">");
        AppendInt(document, "Blocks", row.blocks);
        AppendText(document, "Device", row.device);
        AppendText(document, "FileSystem", row.fileSystem);
        AppendText(document, "Identifier", row.identifier);
        AppendText(document, "MountPoint", row.mountPoint);
        document.append("<field name=\"Removable\"><bool>");
        document.append(row.removable ? "true" : "false").append("</bool></field>");
        AppendInt(document, "SectorSize", row.sectorSize);
        AppendInt(document, "Serial", row.serial);
        document.append("</structure>\n");
    }
    return document.append("  </list>\n</output>\n");
}

}  // namespace Corvel::Bench
