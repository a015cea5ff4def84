#include "corvel/autocli/plugins/ValueDocument.h"

#include "corvel/metaobj/CorvelException.h"

namespace Corvel::AutoCli {

void ValueDocument::StartElement(std::string_view name, const XmlAttributes& attributes) {
    if (_place == Place::BeforeRoot) {
        _place = Place::InRoot;
    } else if (_place != Place::BehindValue) {
        _place = Place::InValue;
        _value.StartElement(name, attributes);
    }
}

void ValueDocument::Text(std::string_view text) {
    if (_place == Place::InValue) {
        _value.Text(text);
    }
}

void ValueDocument::EndElement() {
    if (_place == Place::InValue) {
        _value.EndElement();
        _place = _value.IsComplete() ? Place::BehindValue : Place::InValue;
    }
}

std::shared_ptr<MetaObj::MetaObject> ValueDocument::TakeValue() {
    if (_place == Place::BeforeRoot) {
        throw CorvelException(
            "Error parsing command output.  Unable to find a properly formatted output tag as the "
            "document root");
    }
    return _value.TakeValue();
}

}  // namespace Corvel::AutoCli
