#include "corvel/metaobj/MetaList.h"

#include <algorithm>
#include <utility>

#include "corvel/metaobj/MetaBool.h"
#include "corvel/metaobj/MetaInt.h"
#include "corvel/metaobj/MetaString.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/ReleaseScope.h"
#include "corvel/metaobj/StructureComparison.h"
#include "corvel/metaobj/ValueText.h"

namespace Corvel::MetaObj {

std::shared_ptr<MetaList> MetaList::New(MetaType type) {
    return std::make_shared<MetaList>(FactoryFlag{}, type);
}

std::shared_ptr<MetaList> MetaList::New(MetaType type,
                                        const std::shared_ptr<MetaStruct>& structure) {
    return New(type, std::shared_ptr<MetaStruct>(structure));
}

std::shared_ptr<MetaList> MetaList::New(MetaType type, std::shared_ptr<MetaStruct>&& structure) {
    return std::make_shared<MetaList>(FactoryFlag{}, type, std::move(structure));
}

std::shared_ptr<MetaList> MetaList::New(MetaType type,
                                        const std::shared_ptr<MetaObject>& structure) {
    const bool isStruct = View(structure.get()).kind == ValueKind::Struct;
    return New(type, isStruct ? std::static_pointer_cast<MetaStruct>(structure) : nullptr);
}

std::shared_ptr<MetaList> MetaList::New(MetaType type, std::nullptr_t /*structure*/) {
    return New(type, std::shared_ptr<MetaStruct>());
}

MetaList::MetaList(FactoryFlag flag, MetaType type)
    : MetaObject(flag, MetaType::List), _listType(type) {
    if (type != MetaType::Int && type != MetaType::Bool && type != MetaType::String) {
        throw CorvelException("Integer, boolean or string type expected for list.");
    }
}

MetaList::MetaList(FactoryFlag flag, MetaType type, std::shared_ptr<MetaStruct>&& structure)
    : MetaObject(flag, MetaType::List), _listType(type) {
    if (type != MetaType::Struct) {
        throw CorvelException("Struct type expected for list.");
    }
    if (structure != nullptr) {
        structure->LockStructure();
    }
    _listStructure = std::move(structure);
}

MetaList::~MetaList() {
    ReleaseScope scope;
    scope.Release(_objects);
    scope.Release(std::move(_listStructure));
}

MetaType MetaList::GetListType() const {
    return _listType;
}

std::shared_ptr<MetaStruct> MetaList::GetListStructure() const {
    return _listStructure;
}

const std::vector<std::shared_ptr<MetaObject>>& MetaList::GetObjects() const {
    return _objects;
}

std::size_t MetaList::GetCount() const {
    return _objects.size();
}

std::shared_ptr<MetaObject> MetaList::GetItem(std::uint32_t index) const {
    if (index >= _objects.size()) {
        throw CorvelException("Get requested on invalid index of MetaList");
    }
    return _objects[index];
}

const std::shared_ptr<MetaObject>& MetaList::operator[](std::uint32_t index) const {
    return _objects[index];
}

void MetaList::Delete(std::uint32_t index) {
    if (index >= _objects.size()) {
        throw CorvelException("Delete requested on invalid index of MetaList");
    }
    _objects.erase(_objects.begin() + index);
}

void MetaList::Reserve(std::size_t count) {
    _objects.reserve(count);
}

void MetaList::EnsureCapacity(std::size_t count) {
    if (count > _objects.capacity() - _objects.size()) {
        // A count so large that the sum wraps around is refused by the vector itself.
        _objects.reserve(std::max({count, _objects.size() + count, 2 * _objects.capacity()}));
    }
}

void MetaList::Add(std::shared_ptr<MetaObject> item) {
    if (item == nullptr) {
        throw CorvelException("Null object passed to Add");
    }
    if (item->GetType() != _listType) {
        throw CorvelException("Invalid type specificed in MetaList.  Expected object of type " +
                              MetaTypeString(_listType) + " got object of type " +
                              MetaTypeString(item->GetType()));
    }
    // Reasons cost time, and hardly any item needs them.
    if (!Validate(item)) {
        throw CorvelException(ReasonsAgainst(item));
    }
    _objects.push_back(std::move(item));
}

std::string MetaList::ReasonsAgainst(const std::shared_ptr<MetaObject>& item) const {
    std::list<std::string> errors;
    Validate(item, &errors);
    std::string message = "Invalid structure detected by MetaList::Add.  Type Errors were: (" +
                          std::to_string(errors.size()) + ") : ";
    for (const std::string& error : errors) {
        message.append(error).append(", ");
    }
    return message;
}

void MetaList::Add(std::shared_ptr<MetaBool> item) {
    Add(std::shared_ptr<MetaObject>(std::move(item)));
}

void MetaList::Add(std::shared_ptr<MetaInt> item) {
    Add(std::shared_ptr<MetaObject>(std::move(item)));
}

void MetaList::Add(std::shared_ptr<MetaString> item) {
    Add(std::shared_ptr<MetaObject>(std::move(item)));
}

void MetaList::Add(std::shared_ptr<MetaStruct> item) {
    Add(std::shared_ptr<MetaObject>(std::move(item)));
}

void MetaList::Add(std::nullptr_t /*item*/) {
    Add(std::shared_ptr<MetaObject>());
}

void MetaList::Add(bool value) {
    Add(MetaBool::New(value));
}

void MetaList::Add(int value) {
    Add(static_cast<long>(value));
}

void MetaList::Add(long value) {
    Add(MetaInt::New(value));
}

void MetaList::Add(long long value) {
    Add(static_cast<long>(value));
}

void MetaList::Add(unsigned value) {
    Add(static_cast<long>(value));
}

void MetaList::Add(unsigned long value) {
    Add(static_cast<long>(value));
}

void MetaList::Add(unsigned long long value) {
    Add(static_cast<long>(value));
}

void MetaList::Add(const char* value) {
    Add(MetaString::New(value));
}

void MetaList::Add(const std::string& value) {
    Add(MetaString::New(value));
}

void MetaList::Add(std::string&& value) {
    Add(MetaString::New(std::move(value)));
}

void MetaList::AddAll(const std::list<bool>& values) {
    EnsureCapacity(values.size());
    for (const bool value : values) {
        Add(value);
    }
}

void MetaList::AddAll(const std::list<long>& values) {
    EnsureCapacity(values.size());
    for (const long value : values) {
        Add(value);
    }
}

void MetaList::AddAll(const std::list<std::string>& values) {
    EnsureCapacity(values.size());
    for (const std::string& value : values) {
        Add(value);
    }
}

void MetaList::AddAll(std::list<std::string>&& values) {
    EnsureCapacity(values.size());
    for (std::string& value : values) {
        Add(std::move(value));
    }
}

bool MetaList::Validate(const std::shared_ptr<MetaObject>& item,
                        std::list<std::string>* errors) const {
    const auto report = [errors](const char* message) {
        if (errors != nullptr) {
            errors->push_back(message);
        }
        return false;
    };
    if (item == nullptr) {
        return report("Invalid NULL input");
    }
    if (item->GetType() != _listType) {
        return report(
            "There was an error adding an item to this list.  The item being added was not the "
            "correct type for this list, so it was not added.");
    }
    if (_listType != MetaType::Struct) {
        return true;
    }
    if (_listStructure == nullptr) {
        return report("List created with NULL structure.  No items can be added to this list.");
    }
    return _listStructure->IsSameStructure(item, errors) ||
           report(
               "There was an error adding an item to this list.  The item being added did not "
               "match the declared structure of this list, so it was not added.");
}

bool MetaList::IsSameStructure(const std::shared_ptr<MetaObject>& other,
                               std::list<std::string>* errors) const {
    return StructureComparison(errors).Compare(*this, other.get());
}

std::string MetaList::ToString() const {
    std::string text;
    AppendText(text, *this);
    return text;
}

}  // namespace Corvel::MetaObj
