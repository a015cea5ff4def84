#include <string>

#include "tests/scale/Case.h"
#include <corvel/corvel.h>

namespace Corvel::Scale {

namespace {

using MetaObj::MetaList;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

/// The sizes of one disk, within its structure.
std::shared_ptr<MetaStruct> MakeSize(const std::shared_ptr<MetaStruct>& definition, long blocks) {
    auto size = MetaStruct::New(definition);
    size->SetField("Blocks", blocks);
    size->SetField("Unit", "Mb");
    return size;
}

std::shared_ptr<MetaList> MakeDisks(std::size_t count) {
    const auto size = MetaStruct::New("Size");
    size->SetField("Blocks", 0);
    size->SetField("Unit", "");
    const auto disk = MetaStruct::New("Disk");
    disk->SetField("Device", "");
    disk->SetField("Mounted", false);
    disk->SetField("Serial", 0);
    disk->SetField("Size", MakeSize(size, 0));
    auto list = MetaList::New(MetaType::Struct, disk);
    list->Reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto number = static_cast<long>(i);
        const auto item = MetaStruct::New(disk);
        item->SetField("Device", "/dev/disk " + std::to_string(i) + " <of> \"many\" & so on");
        item->SetField("Mounted", i % 2 == 0);
        item->SetField("Serial", number * 7919);
        item->SetField("Size", MakeSize(size, number));
        list->Add(item);
    }
    return list;
}

/// Formats a list of disks, of which each takes so many lines, and all of them some more.
void Format(std::size_t count, const Style& style, std::size_t linesEach, std::size_t linesMore) {
    const std::size_t lines = CountLines(MakeDisks(count), style);
    const std::size_t expected = count * linesEach + linesMore;
    Require(lines == expected,
            std::to_string(expected) + " lines by " + style.formatter + ", not " +
                std::to_string(lines));
}

void FormatSimple(std::size_t count) {
    Format(count, {"simple"}, 9, 1);
}

void FormatSimpleStyled(std::size_t count) {
    Format(count,
           {"simple",
            {"header:Disk=Disk %Device% of many",
             "align-fields=true",
             "fields:Disk=Device,Serial,Mounted",
             "units:Disk.Serial=no",
             "printf:Disk.Serial=%020ld"}},
           5,
           1);
}

void FormatTable(std::size_t count) {
    Format(count, {"table"}, 1, 2);
}

void FormatTableOfPaths(std::size_t count) {
    Format(count,
           {"table", {"fields=Size.Blocks,Device,Size.Unit,Size.Blocks", "units:Disk.Device=no"}},
           1,
           2);
}

/// The last column is 20 wide, its texts three lines and more.
void FormatTableWrapped(std::size_t count) {
    const auto list = MakeDisks(count);
    const Style style{
        "table", {"fields=Serial,Device", "wrap-last=true", "printf:Disk.Serial=%05ld"}, 30};
    Require(CountLines(list, style) > 2 * count, "a last column of more than one line");
}

void FormatXml(std::size_t count) {
    Format(count, {"xml"}, 21, 9);
}

void FormatJson(std::size_t count) {
    Format(count, {"json"}, 11, 3);
}

void FormatPython(std::size_t count) {
    Format(count, {"python"}, 0, 1);
}

void FormatText(std::size_t count) {
    const std::string text = MakeDisks(count)->ToString();
    Require(text.size() > count * 100, "a text for each disk");
}

std::shared_ptr<MetaStruct> Item(const std::shared_ptr<MetaStruct>& definition,
                                 const std::string& name,
                                 const std::string& description) {
    auto item = MetaStruct::New(definition);
    item->SetField("Name", name);
    item->SetField("Description", description);
    return item;
}

void FormatListing(std::size_t count) {
    const auto definition = MetaStruct::New("NamespaceNode");
    definition->SetField("Name", "");
    definition->SetField("Description", "");
    definition->SetField("Type", "");
    auto nodes = MetaList::New(MetaType::Struct, definition);
    for (std::size_t i = 0; i < count; ++i) {
        const auto item = Item(definition, "node" + std::to_string(i), "One of many nodes.");
        item->SetField("Type", i % 2 == 0 ? "Command" : "Namespace");
        nodes->Add(item);
    }
    const auto listing = MetaStruct::New("QuorcliCommandPrint");
    listing->SetField("Dispatcher", "quorcli");
    listing->SetField("NamespaceNodes", nodes);
    Require(CountLines(listing, {"clihelp", {}, 80}) == count + 6, "a line for each node");
}

void FormatHelp(std::size_t count) {
    const auto definition = MetaStruct::New("QuorCliCommandParameter");
    for (const char* field : {"Name", "Short Name", "Description"}) {
        definition->SetField(field, "");
    }
    auto parameters = MetaList::New(MetaType::Struct, definition);
    const auto exampleDefinition = MetaStruct::New("QuorCliCommandExample");
    exampleDefinition->SetField("Description", "");
    exampleDefinition->SetField("Syntax", "");
    auto examples = MetaList::New(MetaType::Struct, exampleDefinition);
    for (std::size_t i = 0; i < count; ++i) {
        const auto item = Item(definition, "name" + std::to_string(i), "One of many parameters.");
        item->SetField("Short Name", "");
        parameters->Add(item);
        const auto example = MetaStruct::New(exampleDefinition);
        example->SetField("Description", "An example");
        example->SetField("Syntax", "--name 1");
        examples->Add(example);
    }
    const auto help = MetaStruct::New("QuorCliCommandHelp");
    help->SetField("Dispatcher", "quorcli");
    help->SetField("Path", "a b");
    help->SetField("Description", "Help.");
    help->SetField("Param List", parameters);
    help->SetField("Example List", examples);
    Require(CountLines(help, {"commandhelp", {}, 80}) == 4 * count + 7, "four lines for each");
}

}  // namespace

std::span<const Case> FormatCases() {
    static constexpr Case kCases[] = {
        {"format-simple", FormatSimple},
        {"format-simple-styled", FormatSimpleStyled},
        {"format-table", FormatTable},
        {"format-table-paths", FormatTableOfPaths},
        {"format-table-wrapped", FormatTableWrapped},
        {"format-xml", FormatXml},
        {"format-json", FormatJson},
        {"format-python", FormatPython},
        {"format-text", FormatText},
        {"format-clihelp", FormatListing},
        {"format-commandhelp", FormatHelp},
    };
    return kCases;
}

}  // namespace Corvel::Scale
