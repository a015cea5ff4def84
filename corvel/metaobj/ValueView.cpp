#include "corvel/metaobj/ValueView.h"

#include <typeinfo>

#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"

namespace Corvel::MetaObj {

namespace {

// The value classes are final, so comparing the class is all that a dynamic cast would do.
template <typename T>
const T* As(const MetaObject& value) {
    return typeid(value) == typeid(T) ? static_cast<const T*>(&value) : nullptr;
}

}  // namespace

ValueView View(const MetaObject* value) {
    ValueView view;
    if (value == nullptr) {
        return view;
    }
    view.kind = ValueKind::Mismatch;
    view.type = value->GetType();
    switch (view.type) {
        case MetaType::Int:
            if (const auto* integer = As<MetaInt>(*value)) {
                view.kind = ValueKind::Int;
                view.integer = integer->GetValue();
            }
            break;
        case MetaType::Bool:
            if (const auto* boolean = As<MetaBool>(*value)) {
                view.kind = ValueKind::Bool;
                view.boolean = boolean->GetValue();
            }
            break;
        case MetaType::String:
            if (const auto* text = As<MetaString>(*value)) {
                view.kind = ValueKind::String;
                view.text = text->GetValue();
            }
            break;
        case MetaType::Struct:
            view.structure = As<MetaStruct>(*value);
            if (view.structure != nullptr) {
                view.kind = ValueKind::Struct;
            }
            break;
        case MetaType::List:
            view.list = As<MetaList>(*value);
            if (view.list != nullptr) {
                view.kind = ValueKind::List;
            }
            break;
    }
    if (view.kind == ValueKind::Mismatch) {
        view.object = value;
    }
    return view;
}

void StructView::Gather() {
    _gathered.reserve(_count);
    _layout->ForEach([this](const Entry& entry) {
        if (_structure->HasValue(entry.slot)) {
            _gathered.push_back(entry);
        }
    });
    _entries = _gathered.data();
}

}  // namespace Corvel::MetaObj
