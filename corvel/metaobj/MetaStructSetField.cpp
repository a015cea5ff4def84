#include <utility>

#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/NullText.h"

/// The overloads of MetaStruct::SetField. Each makes a value of its argument and hands it to the
/// full setter.
namespace Corvel::MetaObj {

namespace {

template <typename Values>
std::shared_ptr<MetaObject> ListOf(MetaType type, Values&& values) {
    auto list = MetaList::New(type);
    list->AddAll(std::forward<Values>(values));
    return list;
}

}  // namespace

void MetaStruct::SetField(const std::string& name,
                          std::shared_ptr<MetaObject> value,
                          const char* documentation) {
    SetField(name, std::move(value), std::string(TextOrEmpty(documentation)));
}

void MetaStruct::SetField(const char* name,
                          std::shared_ptr<MetaObject> value,
                          const std::string& documentation) {
    SetField(std::string(TextOrEmpty(name)), std::move(value), documentation);
}

void MetaStruct::SetField(const char* name,
                          std::shared_ptr<MetaObject> value,
                          const char* documentation) {
    SetField(std::string(TextOrEmpty(name)), std::move(value), documentation);
}

void MetaStruct::SetField(const std::string& name, std::shared_ptr<MetaBool> value) {
    SetField(name, std::shared_ptr<MetaObject>(std::move(value)));
}

void MetaStruct::SetField(const std::string& name, std::shared_ptr<MetaInt> value) {
    SetField(name, std::shared_ptr<MetaObject>(std::move(value)));
}

void MetaStruct::SetField(const std::string& name, std::shared_ptr<MetaString> value) {
    SetField(name, std::shared_ptr<MetaObject>(std::move(value)));
}

void MetaStruct::SetField(const std::string& name, std::shared_ptr<MetaList> value) {
    SetField(name, std::shared_ptr<MetaObject>(std::move(value)));
}

void MetaStruct::SetField(const std::string& name, std::shared_ptr<MetaStruct> value) {
    SetField(name, std::shared_ptr<MetaObject>(std::move(value)));
}

void MetaStruct::SetField(const std::string& name, std::nullptr_t /*value*/) {
    SetField(name, std::shared_ptr<MetaObject>());
}

void MetaStruct::SetField(const std::string& name, bool value) {
    SetField(name, MetaBool::New(value));
}

void MetaStruct::SetField(const std::string& name, int value) {
    SetField(name, static_cast<long>(value));
}

void MetaStruct::SetField(const std::string& name, long value) {
    SetField(name, MetaInt::New(value));
}

void MetaStruct::SetField(const std::string& name, long long value) {
    SetField(name, static_cast<long>(value));
}

void MetaStruct::SetField(const std::string& name, unsigned value) {
    SetField(name, static_cast<long>(value));
}

void MetaStruct::SetField(const std::string& name, unsigned long value) {
    SetField(name, static_cast<long>(value));
}

void MetaStruct::SetField(const std::string& name, unsigned long long value) {
    SetField(name, static_cast<long>(value));
}

void MetaStruct::SetField(const std::string& name, const char* value) {
    SetField(name, MetaString::New(value));
}

void MetaStruct::SetField(const std::string& name, const std::string& value) {
    SetField(name, MetaString::New(value));
}

void MetaStruct::SetField(const std::string& name, std::string&& value) {
    SetField(name, MetaString::New(std::move(value)));
}

void MetaStruct::SetField(const std::string& name, const std::list<std::string>& values) {
    SetField(name, ListOf(MetaType::String, values));
}

void MetaStruct::SetField(const std::string& name, std::list<std::string>&& values) {
    SetField(name, ListOf(MetaType::String, std::move(values)));
}

void MetaStruct::SetField(const std::string& name, const std::list<long>& values) {
    SetField(name, ListOf(MetaType::Int, values));
}

void MetaStruct::SetField(const std::string& name, const std::list<bool>& values) {
    SetField(name, ListOf(MetaType::Bool, values));
}

void MetaStruct::SetField(const char* name, std::shared_ptr<MetaObject> value) {
    SetField(std::string(TextOrEmpty(name)), std::move(value));
}

void MetaStruct::SetField(const char* name, std::shared_ptr<MetaBool> value) {
    SetField(std::string(TextOrEmpty(name)), std::move(value));
}

void MetaStruct::SetField(const char* name, std::shared_ptr<MetaInt> value) {
    SetField(std::string(TextOrEmpty(name)), std::move(value));
}

void MetaStruct::SetField(const char* name, std::shared_ptr<MetaString> value) {
    SetField(std::string(TextOrEmpty(name)), std::move(value));
}

void MetaStruct::SetField(const char* name, std::shared_ptr<MetaList> value) {
    SetField(std::string(TextOrEmpty(name)), std::move(value));
}

void MetaStruct::SetField(const char* name, std::shared_ptr<MetaStruct> value) {
    SetField(std::string(TextOrEmpty(name)), std::move(value));
}

void MetaStruct::SetField(const char* name, std::nullptr_t /*value*/) {
    SetField(std::string(TextOrEmpty(name)), nullptr);
}

void MetaStruct::SetField(const char* name, bool value) {
    SetField(std::string(TextOrEmpty(name)), value);
}

void MetaStruct::SetField(const char* name, int value) {
    SetField(std::string(TextOrEmpty(name)), value);
}

void MetaStruct::SetField(const char* name, long value) {
    SetField(std::string(TextOrEmpty(name)), value);
}

void MetaStruct::SetField(const char* name, long long value) {
    SetField(std::string(TextOrEmpty(name)), value);
}

void MetaStruct::SetField(const char* name, unsigned value) {
    SetField(std::string(TextOrEmpty(name)), value);
}

void MetaStruct::SetField(const char* name, unsigned long value) {
    SetField(std::string(TextOrEmpty(name)), value);
}

void MetaStruct::SetField(const char* name, unsigned long long value) {
    SetField(std::string(TextOrEmpty(name)), value);
}

void MetaStruct::SetField(const char* name, const char* value) {
    SetField(std::string(TextOrEmpty(name)), value);
}

void MetaStruct::SetField(const char* name, const std::string& value) {
    SetField(std::string(TextOrEmpty(name)), value);
}

void MetaStruct::SetField(const char* name, std::string&& value) {
    SetField(std::string(TextOrEmpty(name)), std::move(value));
}

void MetaStruct::SetField(const char* name, const std::list<std::string>& values) {
    SetField(std::string(TextOrEmpty(name)), values);
}

void MetaStruct::SetField(const char* name, std::list<std::string>&& values) {
    SetField(std::string(TextOrEmpty(name)), std::move(values));
}

void MetaStruct::SetField(const char* name, const std::list<long>& values) {
    SetField(std::string(TextOrEmpty(name)), values);
}

void MetaStruct::SetField(const char* name, const std::list<bool>& values) {
    SetField(std::string(TextOrEmpty(name)), values);
}

}  // namespace Corvel::MetaObj
