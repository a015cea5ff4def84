#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/StrayPointer.h"
#include "corvel/platform/Export.h"

namespace Corvel::MetaObj {

class MetaBool;
class MetaInt;
class MetaString;

/// A sequence of values of one kind (Int, Bool, String or Struct; there are no lists of lists), in
/// the order in which they were added. A list of structures has a list structure, whose shape every
/// item must have.
///
/// Ownership: shares its items and its list structure. A list must not contain itself.
/// Failures:  CorvelException; an Add that failed leaves the list as it was.
class CORVEL_EXPORT MetaList final : public MetaObject {
public:
    /// A list of scalars. Raises
    ///   "Integer, boolean or string type expected for list."
    static std::shared_ptr<MetaList> New(MetaType type);
    /// A list of structures. Locks the structure. Without one (an empty reference, or an object
    /// that is no structure) nothing can be added. Raises
    ///   "Struct type expected for list."  (the type is anything but Struct)
    static std::shared_ptr<MetaList> New(MetaType type,
                                         const std::shared_ptr<MetaStruct>& structure);
    static std::shared_ptr<MetaList> New(MetaType type, std::shared_ptr<MetaStruct>&& structure);
    static std::shared_ptr<MetaList> New(MetaType type,
                                         const std::shared_ptr<MetaObject>& structure);
    static std::shared_ptr<MetaList> New(MetaType type, std::nullptr_t structure);

    MetaList(FactoryFlag flag, MetaType type);
    MetaList(FactoryFlag flag, MetaType type, std::shared_ptr<MetaStruct>&& structure);
    ~MetaList();

    MetaType GetListType() const;
    /// @return an empty reference for a list of scalars.
    std::shared_ptr<MetaStruct> GetListStructure() const;
    const std::vector<std::shared_ptr<MetaObject>>& GetObjects() const;
    std::size_t GetCount() const;
    /// Raises "Get requested on invalid index of MetaList".
    std::shared_ptr<MetaObject> GetItem(std::uint32_t index) const;
    /// Without any check: the caller knows that index < GetCount().
    const std::shared_ptr<MetaObject>& operator[](std::uint32_t index) const;
    /// Later items move up. Raises "Delete requested on invalid index of MetaList".
    void Delete(std::uint32_t index);

    /// Makes room for `count` items in total.
    void Reserve(std::size_t count);
    /// Makes room for `count` more items. The room at least doubles, so that many small requests
    /// cost no more than one large one.
    void EnsureCapacity(std::size_t count);

    /// Adds one item at the end. Raises
    ///   "Null object passed to Add"
    ///   "Invalid type specificed in MetaList.  Expected object of type " + kind
    ///       + " got object of type " + kind
    ///   "Invalid structure detected by MetaList::Add.  Type Errors were: (" + count + ") : "
    ///       + each message of Validate + ", "
    void Add(std::shared_ptr<MetaObject> item);
    void Add(std::shared_ptr<MetaBool> item);
    void Add(std::shared_ptr<MetaInt> item);
    void Add(std::shared_ptr<MetaString> item);
    void Add(std::shared_ptr<MetaStruct> item);
    /// The same for everything that an item can be made of. A null C string is the empty text;
    /// nullptr raises as an empty reference does; an unsigned value above the range of `long` wraps
    /// around, as in a static_cast; any other pointer does not compile.
    void Add(std::nullptr_t item);
    void Add(bool value);
    void Add(int value);
    void Add(long value);
    void Add(long long value);
    void Add(unsigned value);
    void Add(unsigned long value);
    void Add(unsigned long long value);
    void Add(const char* value);
    void Add(const std::string& value);
    void Add(std::string&& value);
    template <typename P, IfStrayPointer<P> = 0>
    void Add(P value) = delete;

    /// One Add for each value in turn; where one fails, those before it stay.
    void AddAll(const std::list<bool>& values);
    void AddAll(const std::list<long>& values);
    void AddAll(const std::list<std::string>& values);
    void AddAll(std::list<std::string>&& values);

    /// Would Add accept this item? Appends the reasons why not to `errors`:
    ///   "Invalid NULL input"
    ///   "There was an error adding an item to this list.  The item being added was not the "
    ///   "correct type for this list, so it was not added."
    ///   "List created with NULL structure.  No items can be added to this list."
    ///   "There was an error adding an item to this list.  The item being added did not match the "
    ///   "declared structure of this list, so it was not added."  (after those of the structure)
    bool Validate(const std::shared_ptr<MetaObject>& item,
                  std::list<std::string>* errors = nullptr) const;

    /// Is `other` a list of the same kind and, where both have one, list structure? Items never
    /// matter. Appends to `errors`
    ///   "Mismatch on structure, NULL comparison"
    ///   "Type mismatch!  Was expecting a List, but got a " + kind
    ///   "Mismatch on list type"
    ///   "List type mismatch list and input"  (after the reasons of the list structure)
    bool IsSameStructure(const std::shared_ptr<MetaObject>& other,
                         std::list<std::string>* errors = nullptr) const override;

    /// @return the texts of the items, joined by ", ".
    std::string ToString() const override;

private:
    std::string ReasonsAgainst(const std::shared_ptr<MetaObject>& item) const;

    std::shared_ptr<MetaStruct> _listStructure;
    std::vector<std::shared_ptr<MetaObject>> _objects;
    MetaType _listType;
};

}  // namespace Corvel::MetaObj
