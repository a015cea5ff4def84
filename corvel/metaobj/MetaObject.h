#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <ostream>
#include <string>

#include "corvel/platform/Export.h"

namespace Corvel::MetaObj {

/// The kind of a value. The numbers are part of the interface: Int comes before Bool.
enum class MetaType : std::uint32_t { Int = 0, Bool = 1, String = 2, Struct = 3, List = 4 };

/// @return "Int", "Bool", "String", "Struct" or "List"; the empty text for any other number.
CORVEL_EXPORT const std::string& MetaTypeString(const MetaType& type);

/// One dynamic value: an integer, a boolean, a text, a structure or a list. Every result of a
/// command and every declared shape of a result is a tree of these.
///
/// Ownership: a value lives in shared references only, made by the New factories of its class.
///            There is deliberately no virtual destructor: the reference that a factory returns
///            knows the concrete class, and nobody deletes through a plain base pointer.
/// Threads:   a value may be read by several threads as long as none changes it. Scalars never
///            change.
class CORVEL_EXPORT MetaObject {
public:
    /// What every constructor of a value class asks for, so that values are made by factories.
    struct FactoryFlag {};

    MetaObject(FactoryFlag flag, MetaType type);
    MetaObject(const MetaObject&) = delete;
    MetaObject& operator=(const MetaObject&) = delete;

    /// Does `other` have the shape of this value? Contents never matter. This rule of the base is
    /// that of the scalars: their kinds must be equal.
    ///
    /// @param errors  where to append the reasons; null when only the answer is wanted.
    ///   "Type mismatch in structure.  Expecting " + kind + " got " + kind of other  ("NULL" for
    ///   an empty reference)
    virtual bool IsSameStructure(const std::shared_ptr<MetaObject>& other,
                                 std::list<std::string>* errors = nullptr) const;
    /// @return the whole value as one text, for people to read.
    virtual std::string ToString() const = 0;

    MetaType GetType() const;

protected:
    ~MetaObject() = default;

private:
    MetaType _type;
};

/// Writes exactly object.ToString(), whatever width or fill the stream is set to.
CORVEL_EXPORT std::ostream& operator<<(std::ostream& stream, const MetaObject& object);

}  // namespace Corvel::MetaObj
