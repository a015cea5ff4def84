#include "corvel/metaobj/StructFilling.h"

#include <utility>

#include "corvel/metaobj/FieldLayout.h"
#include "corvel/metaobj/FieldSlot.h"

namespace Corvel::MetaObj {

StructFilling::StructFilling(std::string_view typeName, MetaStruct* like) {
    if (like == nullptr || like->GetTypeName() != typeName) {
        _structure = MetaStruct::New(std::string(typeName));
        return;
    }
    if (!like->_layout->IsFinished()) {
        like->FinishLayout();
    }
    _structure = std::make_shared<MetaStruct>(MetaObject::FactoryFlag{}, like->_layout);
}

void StructFilling::SetInt(std::string_view name, long value) {
    Set(name, FieldSlot::OfInt(value));
}

void StructFilling::SetBool(std::string_view name, bool value) {
    Set(name, FieldSlot::OfBool(value));
}

void StructFilling::SetText(std::string_view name, std::string_view value) {
    Set(name, FieldSlot::OfText(value));
}

void StructFilling::SetValue(std::string_view name, std::shared_ptr<MetaObject> value) {
    Set(name, FieldSlot::OfReference(std::move(value)));
}

void StructFilling::Set(std::string_view name, FieldSlot&& value) {
    _next = _structure->Set(name, std::move(value), {}, _next) + 1;
}

}  // namespace Corvel::MetaObj
