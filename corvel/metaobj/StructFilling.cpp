#include "corvel/metaobj/StructFilling.h"

#include <utility>

namespace Corvel::MetaObj {

StructFilling::StructFilling(std::string_view typeName, MetaStruct* /*like*/)
    : _structure(MetaStruct::New(std::string(typeName))) {}

void StructFilling::SetInt(std::string_view name, long value) {
    _structure->SetField(std::string(name), value);
}

void StructFilling::SetBool(std::string_view name, bool value) {
    _structure->SetField(std::string(name), value);
}

void StructFilling::SetText(std::string_view name, std::string_view value) {
    _structure->SetField(std::string(name), std::string(value));
}

void StructFilling::SetValue(std::string_view name, std::shared_ptr<MetaObject> value) {
    _structure->SetField(std::string(name), std::move(value));
}

}  // namespace Corvel::MetaObj
