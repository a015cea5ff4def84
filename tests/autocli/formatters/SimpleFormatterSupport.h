#pragma once

#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/SimpleFormatter.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaObject.h"
#include "tests/autocli/formatters/TextSupport.h"

namespace Corvel::AutoCli {

/// What the simple formatter, which always completes its work, writes for a root object.
inline std::string Simple(const std::shared_ptr<MetaObj::MetaObject>& root,
                          FormatParameters parameters = {}) {
    SimpleFormatter formatter;
    const Rendering rendering = Render(formatter, root, std::move(parameters));
    EXPECT_TRUE(rendering.isComplete);
    return rendering.text;
}

inline std::shared_ptr<MetaObj::MetaList> TwoDisks() {
    auto disks = MetaObj::MetaList::New(MetaObj::MetaType::Struct, Disk("", 0));
    disks->Add(Disk("sda", 5));
    disks->Add(Disk("sdb", 12));
    return disks;
}

}  // namespace Corvel::AutoCli
