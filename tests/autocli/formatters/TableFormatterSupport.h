#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/TableFormatter.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaStruct.h"
#include "tests/autocli/formatters/TextSupport.h"

namespace Corvel::AutoCli {

/// What the table formatter does with a root object.
inline Rendering Table(const std::shared_ptr<MetaObj::MetaObject>& root,
                       FormatParameters parameters = {},
                       std::uint16_t screenWidth = 0) {
    TableFormatter formatter;
    return Render(formatter, root, std::move(parameters), screenWidth);
}

inline Rendering Complete(std::string text) {
    return {true, std::move(text)};
}

inline Rendering Incomplete(std::string text) {
    return {false, std::move(text)};
}

/// Two disks, whose names and sizes are of different lengths.
inline std::shared_ptr<MetaObj::MetaList> Disks() {
    auto disks = MetaObj::MetaList::New(MetaObj::MetaType::Struct, Disk("", 0));
    disks->Add(Disk("a", 5));
    disks->Add(Disk("bbbb", 12));
    return disks;
}

inline std::shared_ptr<MetaObj::MetaStruct> Item(const std::string& name, const std::string& text) {
    auto item = MetaObj::MetaStruct::New("Item");
    item->SetField("Name", name);
    item->SetField("Text", text);
    return item;
}

/// Two items, the text of one of them long enough to be wrapped.
inline std::shared_ptr<MetaObj::MetaList> Items() {
    auto items = MetaObj::MetaList::New(MetaObj::MetaType::Struct, Item("", ""));
    items->Add(Item("abcd", "one two three four"));
    items->Add(Item("e", "five"));
    return items;
}

}  // namespace Corvel::AutoCli
