#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "corvel/autocli/plugins/XmlReader.h"
#include "corvel/metaobj/MetaObject.h"

namespace Corvel::AutoCli {

/// Builds one value from the events of its element, from the start of this element to its end, by
/// the rules that XmlUtil.h tells. Whatever the depth of the value, it recurses nowhere.
///
/// Failures: raises, at the event that shows the fault, what XmlUtil_BuildMetaObject() raises for
///           elements; then it can only be destroyed.
class ValueBuilder final : public XmlHandler {
public:
    ValueBuilder();
    ~ValueBuilder() override;

    void StartElement(std::string_view name, const XmlAttributes& attributes) override;
    void Text(std::string_view text) override;
    void EndElement() override;

    /// Whether the value's element has come to its end.
    bool IsComplete() const { return _value != nullptr; }
    /// @return the value, empty before it is complete.
    std::shared_ptr<MetaObj::MetaObject> TakeValue() { return std::move(_value); }

private:
    /// A structure or a list that is being filled.
    struct Container;
    enum class Scalar { None, String, Int, Bool };

    void StartInStructure(Container& structure,
                          std::string_view name,
                          const XmlAttributes& attributes);
    void StartValue(std::string_view name, const XmlAttributes& attributes);
    void StartScalar(Scalar scalar);
    void StartStructure(const XmlAttributes& attributes);
    void StartList(const XmlAttributes& attributes);
    void EndScalar();
    void EndContainer();
    std::shared_ptr<MetaObj::MetaObject> FindSibling() const;
    template <typename Anything>
    void Deliver(Anything&& value);

    std::vector<Container> _containers;  // the outermost first
    Scalar _scalar = Scalar::None;       // what is being read inside the innermost of them
    std::string _content;                // of the scalar
    std::size_t _ignoredDepth = 0;       // how many elements deep the events mean nothing
    std::shared_ptr<MetaObj::MetaObject> _value;
};

}  // namespace Corvel::AutoCli
