#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/DisplayContext.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/callspec/Output.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::AutoCli {

inline FormatParameters Parameters(
    std::initializer_list<std::pair<std::string, std::string>> pairs) {
    FormatParameters parameters;
    for (const auto& [key, value] : pairs) {
        parameters.SetParameter(key, value);
    }
    return parameters;
}

/// A structure of type "Disk" with the fields "Name" and "Size".
inline std::shared_ptr<MetaObj::MetaStruct> Disk(const std::string& name, long size) {
    auto disk = MetaObj::MetaStruct::New("Disk");
    disk->SetField("Name", name);
    disk->SetField("Size", size);
    return disk;
}

/// What Format() did: its answer, and what it wrote.
struct Rendering {
    bool isComplete;
    std::string text;

    friend bool operator==(const Rendering&, const Rendering&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const Rendering& rendering) {
        return stream << (rendering.isComplete ? "complete:\n" : "incomplete:\n") << rendering.text;
    }
};

inline Rendering Render(Formatter& formatter,
                        const std::shared_ptr<MetaObj::MetaObject>& root,
                        FormatParameters parameters = {},
                        std::uint16_t screenWidth = 0) {
    auto output = CallSpec::Output::New();
    output->SetRootObject(root);
    DisplayContext display{screenWidth, 0};
    std::ostringstream stream;
    const bool isComplete = formatter.Format(output, parameters, display, stream);
    return {isComplete, stream.str()};
}

/// Puts into a list what it would not take, as somebody does who casts constness away.
inline void ForceInto(MetaObj::MetaList& list, std::shared_ptr<MetaObj::MetaObject> item) {
    const_cast<std::vector<std::shared_ptr<MetaObj::MetaObject>>&>(list.GetObjects())
        .push_back(std::move(item));
}

/// The declared parameters of a formatter are exactly these.
inline void ExpectParams(const Formatter& formatter, const std::vector<FormatterParam>& expected) {
    const std::vector<FormatterParam>& params = formatter.GetParams();
    EXPECT_EQ(params.capacity(), expected.size());
    ASSERT_EQ(params.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(params[i].name, expected[i].name);
        EXPECT_EQ(params[i].description, expected[i].description) << expected[i].name;
        EXPECT_EQ(params[i].flag, expected[i].flag) << expected[i].name;
    }
}

}  // namespace Corvel::AutoCli
