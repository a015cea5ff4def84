#include "corvel/metaobj/MetaObject.h"

#include <array>

namespace Corvel::MetaObj {

const std::string& MetaTypeString(const MetaType& type) {
    static const std::array<std::string, 5> sNames = {"Int", "Bool", "String", "Struct", "List"};
    static const std::string sNoName;
    const auto index = static_cast<std::size_t>(type);
    return index < sNames.size() ? sNames[index] : sNoName;
}

MetaObject::MetaObject(FactoryFlag /*flag*/, MetaType type) : _type(type) {}

bool MetaObject::IsSameStructure(const std::shared_ptr<MetaObject>& other,
                                 std::list<std::string>* errors) const {
    const bool isScalar =
        _type == MetaType::Int || _type == MetaType::Bool || _type == MetaType::String;
    if (isScalar && other != nullptr && other->_type == _type) {
        return true;
    }
    if (errors != nullptr) {
        errors->push_back("Type mismatch in structure.  Expecting " + MetaTypeString(_type) +
                          " got " + (other == nullptr ? "NULL" : MetaTypeString(other->_type)));
    }
    return false;
}

MetaType MetaObject::GetType() const {
    return _type;
}

std::ostream& operator<<(std::ostream& stream, const MetaObject& object) {
    const std::string text = object.ToString();
    return stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}

}  // namespace Corvel::MetaObj
