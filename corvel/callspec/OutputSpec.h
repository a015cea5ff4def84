#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <string>

#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/platform/Export.h"

namespace Corvel::MetaObj {
class MetaBool;
class MetaInt;
class MetaList;
class MetaString;
class MetaStruct;
}  // namespace Corvel::MetaObj

namespace Corvel::CallSpec {

class Output;

/// The declared shape of a command's result: a value whose kinds, field names and list structures
/// the result must have. The texts and numbers in it never matter.
///
/// Ownership: shares the value.
/// Texts:     null, as a C string, counts as empty text.
class CORVEL_EXPORT OutputSpec final {
public:
    /// A declaration without value and description.
    static std::shared_ptr<OutputSpec> New();

    OutputSpec(const OutputSpec&) = delete;
    OutputSpec& operator=(const OutputSpec&) = delete;
    ~OutputSpec();

    /// Raises, for an empty reference or nullptr, "Root object cannot be set to null", and then keeps
    /// the old value.
    void SetRootObject(std::shared_ptr<MetaObj::MetaObject> rootObject);
    void SetRootObject(std::shared_ptr<MetaObj::MetaBool> rootObject);
    void SetRootObject(std::shared_ptr<MetaObj::MetaInt> rootObject);
    void SetRootObject(std::shared_ptr<MetaObj::MetaString> rootObject);
    void SetRootObject(std::shared_ptr<MetaObj::MetaList> rootObject);
    void SetRootObject(std::shared_ptr<MetaObj::MetaStruct> rootObject);
    void SetRootObject(std::nullptr_t rootObject);
    /// @return an empty reference until it is set.
    std::shared_ptr<MetaObj::MetaObject> GetRootObject() const;

    void SetDescription(const std::string& description);
    void SetDescription(const char* description);
    void SetDescription(std::string&& description);
    /// @return "Documentation missing" when there is none.
    const std::string& GetDescription() const;

    /// Does the result have the declared shape? If not, appends to `errors`
    ///   "No root object set for output spec. Root object for output spec must be set for proper
    ///    validation of output."  (as one line)
    ///   "No root object set for output. The command did not provide proper output."
    ///   the reasons of MetaObject::IsSameStructure
    /// @param output  never empty.
    /// @param errors  always pass a list.
    bool Validate(const std::shared_ptr<Output>& output, std::list<std::string>* errors) const;

    /// What GetDescription answers when there is none.
    static const std::string& _docMissingStaticString;

private:
    OutputSpec();

    std::shared_ptr<MetaObj::MetaObject> _rootObject;
    std::string _description;
};

}  // namespace Corvel::CallSpec
