#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/StrayPointer.h"
#include "corvel/metaobj/StructNames.h"
#include "corvel/platform/Export.h"

namespace Corvel::MetaObj {

class FieldExtras;
class FieldLayout;
class FieldSlot;
class MetaBool;
class MetaInt;
class MetaList;
class MetaString;

/// A named record: a type name, and fields in ascending byte order of their names, each with a
/// value and a documentation text. A structure can be the definition of others, which then accept
/// no fields but those of the definition.
///
/// Ownership: shares its values and its definition. A structure must not contain itself.
/// Failures:  CorvelException, except for GetFieldType(); a change that failed leaves the structure
///            as it was.
/// Texts:     null, as a C string, counts as empty text; so does it as a name.
class CORVEL_EXPORT MetaStruct final : public MetaObject {
public:
    /// What a name stands for.
    struct CORVEL_EXPORT Field {
        Field(std::shared_ptr<MetaObject> fieldValue, std::string fieldDocumentation);
        Field(std::shared_ptr<MetaObject> fieldValue, const char* fieldDocumentation);

        std::shared_ptr<MetaObject> value;  ///< never null once it is in a structure
        std::string documentation;          ///< empty: not documented
    };

    /// A structure without fields or definition. Raises
    ///   "Invalid name specified for MetaStruct: " + name  (see IsValidStructName)
    static std::shared_ptr<MetaStruct> New(const char* typeName);
    static std::shared_ptr<MetaStruct> New(const std::string& typeName);
    static std::shared_ptr<MetaStruct> New(std::string&& typeName);
    /// A structure without fields yet, named like its definition. Locks the definition. An empty
    /// reference has no name, and raises accordingly.
    static std::shared_ptr<MetaStruct> New(const std::shared_ptr<MetaStruct>& definition);

    MetaStruct(FactoryFlag flag, std::string&& typeName);
    MetaStruct(FactoryFlag flag, const std::shared_ptr<MetaStruct>& definition);
    /// For the library itself: outside, there are no layouts.
    MetaStruct(FactoryFlag flag, std::shared_ptr<FieldLayout> layout);
    ~MetaStruct();

    const std::string& GetTypeName() const;
    bool HasStructureDefinition() const;
    /// @return an empty reference without definition.
    std::shared_ptr<MetaStruct> GetStructureDefinition() const;
    /// True without definition, else whether the definition has the shape of this structure.
    bool MatchesStructureDefinition() const;
    /// From now on the fields may get other values, but none is added or removed. For good.
    void LockStructure();

    bool HasField(const char* name) const;
    bool HasField(const std::string& name) const;
    /// @return the same reference each time, until the field is set again: the one that was given,
    ///   or one that is made of a plain value when first asked for. An empty reference when there is
    ///   no such field.
    std::shared_ptr<MetaObject> GetField(const char* name) const;
    std::shared_ptr<MetaObject> GetField(const std::string& name) const;
    /// Raises, when there is no such field, the plain `int` 1: deliberately no CorvelException.
    MetaType GetFieldType(const char* name) const;
    MetaType GetFieldType(const std::string& name) const;
    /// @return "Documentation missing" where the field has none. Raises
    ///   "Field " + name + " is not present in the structure " + type name
    const std::string& GetFieldDocumentation(const char* name) const;
    const std::string& GetFieldDocumentation(const std::string& name) const;
    /// @return all names, ascending.
    std::list<std::string> GetFieldNames() const;

    /// Does nothing when there is no such field. Raises
    ///   "Structure is locked, unable to remove fields"
    void RemoveField(const char* name);
    void RemoveField(const std::string& name);

    /// Adds the field, or replaces its value and documentation. The kind of the value is not held
    /// against the definition; IsSameStructure does that. Raises, in this order,
    ///   "Invalid NULL value was assigned to the field " + name + " in the structure " + type name
    ///   "Unable to set new field " + name + " on structure. Structure has been locked"
    ///   "Unable to set new field " + name + " on structure.  The field does not match the "
    ///   "Structure definition for this MetaStruct."
    void SetField(const std::string& name,
                  std::shared_ptr<MetaObject> value,
                  const std::string& documentation = {});
    void SetField(const std::string& name,
                  std::shared_ptr<MetaObject> value,
                  const char* documentation);
    void SetField(const char* name,
                  std::shared_ptr<MetaObject> value,
                  const std::string& documentation);
    void SetField(const char* name, std::shared_ptr<MetaObject> value, const char* documentation);

    /// The same for everything that a value can be made of, without documentation. A null C string
    /// is the empty text; nullptr raises as an empty reference does; an unsigned value above the
    /// range of `long` wraps around, as in a static_cast; any other pointer does not compile.
    void SetField(const char* name, std::shared_ptr<MetaObject> value);
    void SetField(const char* name, std::shared_ptr<MetaBool> value);
    void SetField(const char* name, std::shared_ptr<MetaInt> value);
    void SetField(const char* name, std::shared_ptr<MetaString> value);
    void SetField(const char* name, std::shared_ptr<MetaList> value);
    void SetField(const char* name, std::shared_ptr<MetaStruct> value);
    void SetField(const char* name, std::nullptr_t value);
    void SetField(const char* name, bool value);
    void SetField(const char* name, int value);
    void SetField(const char* name, long value);
    void SetField(const char* name, long long value);
    void SetField(const char* name, unsigned value);
    void SetField(const char* name, unsigned long value);
    void SetField(const char* name, unsigned long long value);
    void SetField(const char* name, const char* value);
    void SetField(const char* name, const std::string& value);
    void SetField(const char* name, std::string&& value);
    void SetField(const char* name, const std::list<std::string>& values);
    void SetField(const char* name, std::list<std::string>&& values);
    void SetField(const char* name, const std::list<long>& values);
    void SetField(const char* name, const std::list<bool>& values);
    template <typename P, IfStrayPointer<P> = 0>
    void SetField(const char* name, P value) = delete;

    void SetField(const std::string& name, std::shared_ptr<MetaBool> value);
    void SetField(const std::string& name, std::shared_ptr<MetaInt> value);
    void SetField(const std::string& name, std::shared_ptr<MetaString> value);
    void SetField(const std::string& name, std::shared_ptr<MetaList> value);
    void SetField(const std::string& name, std::shared_ptr<MetaStruct> value);
    void SetField(const std::string& name, std::nullptr_t value);
    void SetField(const std::string& name, bool value);
    void SetField(const std::string& name, int value);
    void SetField(const std::string& name, long value);
    void SetField(const std::string& name, long long value);
    void SetField(const std::string& name, unsigned value);
    void SetField(const std::string& name, unsigned long value);
    void SetField(const std::string& name, unsigned long long value);
    void SetField(const std::string& name, const char* value);
    void SetField(const std::string& name, const std::string& value);
    void SetField(const std::string& name, std::string&& value);
    void SetField(const std::string& name, const std::list<std::string>& values);
    void SetField(const std::string& name, std::list<std::string>&& values);
    void SetField(const std::string& name, const std::list<long>& values);
    void SetField(const std::string& name, const std::list<bool>& values);
    template <typename P, IfStrayPointer<P> = 0>
    void SetField(const std::string& name, P value) = delete;

    /// @return "{'a' => '1', 'b' => 'x', }": every entry ends with "', ", and nothing is escaped.
    std::string ToString() const override;

    /// Does `other` have the fields of this structure, each of the same kind and shape? Appends to
    /// `errors`, in this order,
    ///   "Invalid NULL input to MetaStruct validation."   an empty reference; the answer is true
    ///   "Type Mismatch in MetaStruct Validation: Expected type Struct got type " + kind
    ///   "Unable to cast to MetaStruct, runtime error?"
    ///   "Type names do not match."                       the answer may still be true
    ///   "Mismatch on number of fields set in struct. Expected " + count + " found " + count
    /// and for the first field that fails, after the reasons of its own value,
    ///   "Missing field in input: " + name
    ///   "Type mismatch on field: " + name
    bool IsSameStructure(const std::shared_ptr<MetaObject>& other,
                         std::list<std::string>* errors = nullptr) const override;

    /// The documentation of a field that was set without one.
    static const std::string& _docEmpty;
    /// What GetFieldDocumentation answers for such a field: "Documentation missing".
    static const std::string& _docMissingStaticString;

private:
    friend class StructFilling;
    friend class StructView;
    friend class StructureComparison;

    bool HasValue(std::size_t slot) const;
    std::size_t FindSlot(std::string_view name) const;
    const FieldSlot* FindField(std::string_view name) const;
    std::shared_ptr<MetaObject> ReferenceAt(std::size_t slot) const;
    FieldExtras& Extras() const;

    void Set(std::string_view name, FieldSlot&& value);
    std::size_t Set(std::string_view name,
                    FieldSlot&& value,
                    std::string_view documentation,
                    std::size_t likelySlot);
    std::size_t SlotFor(std::string_view name, std::size_t likelySlot);
    std::size_t AddSlot(std::string_view name);
    void MakeRoom(std::size_t slot);
    void TakeOwnLayout();
    void FinishLayout();

    bool _locked = false;
    std::shared_ptr<FieldLayout> _layout;
    std::vector<FieldSlot> _slots;  // by slot of the layout; may end before absent fields
    std::size_t _fieldCount = 0;    // how many of them are not absent
    std::shared_ptr<MetaStruct> _definition;
    mutable std::atomic<FieldExtras*> _extras{nullptr};  // owned; most structures have none
};

}  // namespace Corvel::MetaObj
