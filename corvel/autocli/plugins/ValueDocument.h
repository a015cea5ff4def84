#pragma once

#include <memory>
#include <string_view>

#include "corvel/autocli/plugins/ValueBuilder.h"
#include "corvel/autocli/plugins/XmlReader.h"
#include "corvel/metaobj/MetaObject.h"

namespace Corvel::AutoCli {

/// Takes the value out of the events of a whole value document: that of the first element below the
/// root. What stands behind it is passed over.
///
/// Failures: the events raise what ValueBuilder raises.
class ValueDocument final : public XmlHandler {
public:
    void StartElement(std::string_view name, const XmlAttributes& attributes) override;
    void Text(std::string_view text) override;
    void EndElement() override;

    /// To be asked for once all is read.
    /// @return the value, empty when there is no element below the root. Raises
    ///   "Error parsing command output.  Unable to find a properly formatted output tag as the
    ///    document root"
    std::shared_ptr<MetaObj::MetaObject> TakeValue();

private:
    enum class Place { BeforeRoot, InRoot, InValue, BehindValue };

    Place _place = Place::BeforeRoot;
    ValueBuilder _value;
};

}  // namespace Corvel::AutoCli
