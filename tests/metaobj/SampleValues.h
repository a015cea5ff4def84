#pragma once

#include <list>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::MetaObj {

/// Claims to be of a kind and is of no class of the library.
class FalseValue final : public MetaObject {
public:
    explicit FalseValue(MetaType type) : MetaObject(FactoryFlag{}, type) {}
    std::string ToString() const override { return "false value"; }
};

/// A structure with the integers "x" and "y".
inline std::shared_ptr<MetaStruct> PointDefinition() {
    auto definition = MetaStruct::New("Point");
    definition->SetField("x", 0);
    definition->SetField("y", 0);
    return definition;
}

/// What a comparison says: the answer and the reasons.
using Answer = std::pair<bool, std::list<std::string>>;

/// Compares with a list for the reasons; without one the answer must be the same.
inline Answer Compare(const MetaObject& reference, const std::shared_ptr<MetaObject>& candidate) {
    std::list<std::string> errors;
    const bool answer = reference.IsSameStructure(candidate, &errors);
    EXPECT_EQ(reference.IsSameStructure(candidate), answer);
    return {answer, errors};
}

}  // namespace Corvel::MetaObj
