#include <utility>

#include "corvel/metaobj/FieldSlot.h"
#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/NullText.h"

/// The overloads of MetaStruct::SetField. Each makes the slot of its argument and hands it to Set.
namespace Corvel::MetaObj {

namespace {

template <typename Values>
FieldSlot OfList(MetaType type, Values&& values) {
    auto list = MetaList::New(type);
    list->AddAll(std::forward<Values>(values));
    return FieldSlot::OfReference(std::move(list));
}

}  // namespace

void MetaStruct::SetField(const std::string& name,
                          std::shared_ptr<MetaObject> value,
                          const std::string& documentation) {
    Set(name, FieldSlot::OfReference(std::move(value)), documentation, _fieldCount);
}

void MetaStruct::SetField(const std::string& name,
                          std::shared_ptr<MetaObject> value,
                          const char* documentation) {
    Set(name, FieldSlot::OfReference(std::move(value)), TextOrEmpty(documentation), _fieldCount);
}

void MetaStruct::SetField(const char* name,
                          std::shared_ptr<MetaObject> value,
                          const std::string& documentation) {
    Set(TextOrEmpty(name), FieldSlot::OfReference(std::move(value)), documentation, _fieldCount);
}

void MetaStruct::SetField(const char* name,
                          std::shared_ptr<MetaObject> value,
                          const char* documentation) {
    Set(TextOrEmpty(name),
        FieldSlot::OfReference(std::move(value)),
        TextOrEmpty(documentation),
        _fieldCount);
}

void MetaStruct::SetField(const char* name, std::shared_ptr<MetaObject> value) {
    Set(TextOrEmpty(name), FieldSlot::OfReference(std::move(value)));
}

void MetaStruct::SetField(const std::string& name, std::shared_ptr<MetaBool> value) {
    Set(name, FieldSlot::OfReference(std::move(value)));
}

void MetaStruct::SetField(const std::string& name, std::shared_ptr<MetaInt> value) {
    Set(name, FieldSlot::OfReference(std::move(value)));
}

void MetaStruct::SetField(const std::string& name, std::shared_ptr<MetaString> value) {
    Set(name, FieldSlot::OfReference(std::move(value)));
}

void MetaStruct::SetField(const std::string& name, std::shared_ptr<MetaList> value) {
    Set(name, FieldSlot::OfReference(std::move(value)));
}

void MetaStruct::SetField(const std::string& name, std::shared_ptr<MetaStruct> value) {
    Set(name, FieldSlot::OfReference(std::move(value)));
}

void MetaStruct::SetField(const std::string& name, std::nullptr_t /*value*/) {
    Set(name, FieldSlot());
}

void MetaStruct::SetField(const std::string& name, bool value) {
    Set(name, FieldSlot::OfBool(value));
}

void MetaStruct::SetField(const std::string& name, int value) {
    Set(name, FieldSlot::OfInt(value));
}

void MetaStruct::SetField(const std::string& name, long value) {
    Set(name, FieldSlot::OfInt(value));
}

void MetaStruct::SetField(const std::string& name, long long value) {
    Set(name, FieldSlot::OfInt(static_cast<long>(value)));
}

void MetaStruct::SetField(const std::string& name, unsigned value) {
    Set(name, FieldSlot::OfInt(static_cast<long>(value)));
}

void MetaStruct::SetField(const std::string& name, unsigned long value) {
    Set(name, FieldSlot::OfInt(static_cast<long>(value)));
}

void MetaStruct::SetField(const std::string& name, unsigned long long value) {
    Set(name, FieldSlot::OfInt(static_cast<long>(value)));
}

void MetaStruct::SetField(const std::string& name, const char* value) {
    Set(name, FieldSlot::OfText(TextOrEmpty(value)));
}

void MetaStruct::SetField(const std::string& name, const std::string& value) {
    Set(name, FieldSlot::OfText(value));
}

void MetaStruct::SetField(const std::string& name, std::string&& value) {
    Set(name, FieldSlot::OfMovedText(std::move(value)));
}

void MetaStruct::SetField(const std::string& name, const std::list<std::string>& values) {
    Set(name, OfList(MetaType::String, values));
}

void MetaStruct::SetField(const std::string& name, std::list<std::string>&& values) {
    Set(name, OfList(MetaType::String, std::move(values)));
}

void MetaStruct::SetField(const std::string& name, const std::list<long>& values) {
    Set(name, OfList(MetaType::Int, values));
}

void MetaStruct::SetField(const std::string& name, const std::list<bool>& values) {
    Set(name, OfList(MetaType::Bool, values));
}

void MetaStruct::SetField(const char* name, std::shared_ptr<MetaBool> value) {
    Set(TextOrEmpty(name), FieldSlot::OfReference(std::move(value)));
}

void MetaStruct::SetField(const char* name, std::shared_ptr<MetaInt> value) {
    Set(TextOrEmpty(name), FieldSlot::OfReference(std::move(value)));
}

void MetaStruct::SetField(const char* name, std::shared_ptr<MetaString> value) {
    Set(TextOrEmpty(name), FieldSlot::OfReference(std::move(value)));
}

void MetaStruct::SetField(const char* name, std::shared_ptr<MetaList> value) {
    Set(TextOrEmpty(name), FieldSlot::OfReference(std::move(value)));
}

void MetaStruct::SetField(const char* name, std::shared_ptr<MetaStruct> value) {
    Set(TextOrEmpty(name), FieldSlot::OfReference(std::move(value)));
}

void MetaStruct::SetField(const char* name, std::nullptr_t /*value*/) {
    Set(TextOrEmpty(name), FieldSlot());
}

void MetaStruct::SetField(const char* name, bool value) {
    Set(TextOrEmpty(name), FieldSlot::OfBool(value));
}

void MetaStruct::SetField(const char* name, int value) {
    Set(TextOrEmpty(name), FieldSlot::OfInt(value));
}

void MetaStruct::SetField(const char* name, long value) {
    Set(TextOrEmpty(name), FieldSlot::OfInt(value));
}

void MetaStruct::SetField(const char* name, long long value) {
    Set(TextOrEmpty(name), FieldSlot::OfInt(static_cast<long>(value)));
}

void MetaStruct::SetField(const char* name, unsigned value) {
    Set(TextOrEmpty(name), FieldSlot::OfInt(static_cast<long>(value)));
}

void MetaStruct::SetField(const char* name, unsigned long value) {
    Set(TextOrEmpty(name), FieldSlot::OfInt(static_cast<long>(value)));
}

void MetaStruct::SetField(const char* name, unsigned long long value) {
    Set(TextOrEmpty(name), FieldSlot::OfInt(static_cast<long>(value)));
}

void MetaStruct::SetField(const char* name, const char* value) {
    Set(TextOrEmpty(name), FieldSlot::OfText(TextOrEmpty(value)));
}

void MetaStruct::SetField(const char* name, const std::string& value) {
    Set(TextOrEmpty(name), FieldSlot::OfText(value));
}

void MetaStruct::SetField(const char* name, std::string&& value) {
    Set(TextOrEmpty(name), FieldSlot::OfMovedText(std::move(value)));
}

void MetaStruct::SetField(const char* name, const std::list<std::string>& values) {
    Set(TextOrEmpty(name), OfList(MetaType::String, values));
}

void MetaStruct::SetField(const char* name, std::list<std::string>&& values) {
    Set(TextOrEmpty(name), OfList(MetaType::String, std::move(values)));
}

void MetaStruct::SetField(const char* name, const std::list<long>& values) {
    Set(TextOrEmpty(name), OfList(MetaType::Int, values));
}

void MetaStruct::SetField(const char* name, const std::list<bool>& values) {
    Set(TextOrEmpty(name), OfList(MetaType::Bool, values));
}

}  // namespace Corvel::MetaObj
