#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/FieldFinder.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::AutoCli {
namespace {

using MetaObj::MetaStruct;

std::shared_ptr<MetaStruct> Numbers(const std::vector<std::string>& names) {
    auto structure = MetaStruct::New("Numbers");
    for (const std::string& name : names) {
        structure->SetField(name, static_cast<long>(name.back()));
    }
    return structure;
}

/// The number in the field; -1 when there is none.
long Found(FieldFinder& finder, const std::shared_ptr<MetaStruct>& structure) {
    const MetaObj::ValueView value = finder.Find(MetaObj::StructView(*structure));
    return value.kind == MetaObj::ValueKind::Int ? value.integer : -1;
}

TEST(FieldFinder, FindsItsFieldWhereverItStands) {
    const std::vector<std::vector<std::string>> structures{
        {"x"}, {"a", "x"}, {"a", "b", "x", "y"}, {"x", "y", "z"}, {"a", "b", "c", "d", "e", "x"}};
    // Every one after every other.
    for (const auto& first : structures) {
        for (const auto& second : structures) {
            FieldFinder finder("x");
            const auto before = Numbers(first);
            const auto after = Numbers(second);
            EXPECT_EQ('x', Found(finder, before));
            EXPECT_EQ('x', Found(finder, after));
            EXPECT_EQ('x', Found(finder, before));
        }
    }
}

TEST(FieldFinder, FindsEveryFieldAndNoOther) {
    const auto structure = Numbers({"b", "d", "f", "h"});
    for (const char name : std::string("abcdefghi")) {
        FieldFinder finder(std::string(1, name));
        const bool isField = std::string("bdfh").find(name) != std::string::npos;
        EXPECT_EQ(isField ? name : -1, Found(finder, structure)) << name;
    }
}

TEST(FieldFinder, MissesAFieldThatIsNotThere) {
    FieldFinder finder("x");
    const auto with = Numbers({"a", "x"});
    for (const std::vector<std::string>& names :
         {std::vector<std::string>{}, {"a"}, {"a", "b"}, {"y", "z"}, {"xx"}, {"a", "b", "xx"}}) {
        const auto without = Numbers(names);
        EXPECT_EQ('x', Found(finder, with));
        EXPECT_EQ(-1, Found(finder, without));
        EXPECT_EQ(-1, Found(finder, without));
    }
    EXPECT_EQ('x', Found(finder, with));
}

TEST(FieldFinder, MissesAFieldOfWhichOnlyTheNameIsKnown) {
    // Made from one definition: they share their names, and one of them has not all fields.
    const auto definition = Numbers({"a", "x", "z"});
    const auto whole = MetaStruct::New(definition);
    const auto partial = MetaStruct::New(definition);
    for (const char* name : {"a", "x", "z"}) {
        whole->SetField(name, static_cast<long>(name[0]));
    }
    partial->SetField("a", 1);
    partial->SetField("z", 2);
    FieldFinder finder("x");
    FieldFinder last("z");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ('x', Found(finder, whole));
        EXPECT_EQ(-1, Found(finder, partial));
        EXPECT_EQ('z', Found(last, whole));
        EXPECT_EQ(2, Found(last, partial));
    }
}

}  // namespace
}  // namespace Corvel::AutoCli
