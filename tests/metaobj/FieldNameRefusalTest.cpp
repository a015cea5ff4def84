#include <string>

#include <gtest/gtest.h>

#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/StructNames.h"
#include "tests/support/ThrownText.h"

// The linker puts this in the place of IsValidFieldName (--wrap), which refuses nothing itself.
bool RefuseDashes(const std::string& name) asm(
    "__wrap__ZN6Corvel7MetaObj16IsValidFieldNameERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESa"
    "IcEEE");

bool RefuseDashes(const std::string& name) {
    return name.find('-') == std::string::npos;
}

namespace Corvel::MetaObj {
namespace {

using Testing::ThrownText;

TEST(FieldNameRefusal, RefusedNameRaisesAndChangesNothing) {
    const auto structure = MetaStruct::New("Point");
    structure->SetField("x", 1);
    EXPECT_EQ(ThrownText([&] { structure->SetField("x-y", 2); }),
              "Unable to set new field x-y on structure Point, because the field name contains "
              "invalid character. Can only be alphanumeric characters and '_'");
    EXPECT_EQ(structure->ToString(), "{'x' => '1', }");
}

TEST(FieldNameRefusal, NullValueAndRefusedNameComeBeforeTheLock) {
    const auto structure = MetaStruct::New("Point");
    structure->LockStructure();
    EXPECT_EQ(ThrownText([&] { structure->SetField("x-y", nullptr); }),
              "Invalid NULL value was assigned to the field x-y in the structure Point");
    EXPECT_EQ(ThrownText([&] { structure->SetField("x-y", 2); }),
              "Unable to set new field x-y on structure Point, because the field name contains "
              "invalid character. Can only be alphanumeric characters and '_'");
}

}  // namespace
}  // namespace Corvel::MetaObj
