#include "fuzz/support/ValueNotation.h"

#include <cstddef>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/support/InputText.h"

namespace Corvel::Fuzz {

using MetaObj::MetaBool;
using MetaObj::MetaInt;
using MetaObj::MetaList;
using MetaObj::MetaObject;
using MetaObj::MetaString;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

namespace {

constexpr std::size_t kDeepest = 40;

/// A structure or a list that is being filled. A list of structures is made with its first item.
struct Container {
    std::shared_ptr<MetaStruct> structure = {};
    std::shared_ptr<MetaList> list = {};
    std::string fieldName = {};
};

class Builder {
public:
    void Read(const std::string& step) {
        const std::string rest = step.empty() ? "" : FromCarets(step.substr(1));
        switch (step.empty() ? '\0' : step[0]) {
            case '"':
                return Deliver(MetaString::New(rest));
            case '#':
                return Deliver(MetaInt::New(ToNumber(
                    rest, std::numeric_limits<long>::min(), std::numeric_limits<long>::max())));
            case '?':
                return Deliver(MetaBool::New(rest == "1"));
            case '{':
                return BeginStructure(rest);
            case '[':
                return BeginList(rest);
            case '.':
                return NameField(rest);
            case '}':
            case ']':
                return End();
            default:
                return;
        }
    }

    std::shared_ptr<MetaObject> TakeValue() {
        while (!_open.empty()) {
            End();
        }
        return std::move(_value);
    }

private:
    void BeginStructure(const std::string& typeName) {
        if (_open.size() < kDeepest && _value == nullptr) {
            const bool isValid = MetaObj::IsValidStructName(typeName);
            _open.push_back({.structure = MetaStruct::New(isValid ? typeName : "T")});
        }
    }

    void BeginList(const std::string& kind) {
        if (_open.size() >= kDeepest || _value != nullptr) {
            return;
        }
        Container container;
        if (kind != "{") {
            container.list = MetaList::New(kind == "#"   ? MetaType::Int
                                           : kind == "?" ? MetaType::Bool
                                                         : MetaType::String);
        }
        _open.push_back(std::move(container));
    }

    void NameField(const std::string& name) {
        if (!_open.empty()) {
            _open.back().fieldName = name;
        }
    }

    void End() {
        if (_open.empty()) {
            return;
        }
        Container ended = std::move(_open.back());
        _open.pop_back();
        if (ended.structure != nullptr) {
            Deliver(ended.structure);
        } else {
            Deliver(ended.list != nullptr ? ended.list : MetaList::New(MetaType::Struct, nullptr));
        }
    }

    void Deliver(const std::shared_ptr<MetaObject>& value) {
        if (_open.empty()) {
            _value = _value == nullptr ? value : _value;
            return;
        }
        Container& container = _open.back();
        if (container.structure != nullptr) {
            container.structure->SetField(container.fieldName, value);
            return;
        }
        if (container.list == nullptr && value->GetType() == MetaType::Struct) {
            container.list = MetaList::New(MetaType::Struct, value);
        }
        if (container.list != nullptr && container.list->Validate(value)) {
            container.list->Add(value);
        }
    }

    std::vector<Container> _open;  // the outermost first
    std::shared_ptr<MetaObject> _value;
};

}  // namespace

std::shared_ptr<MetaObject> ReadValue(std::string_view text) {
    Builder builder;
    for (const std::string& step : SplitLines(text)) {
        builder.Read(step);
    }
    return builder.TakeValue();
}

}  // namespace Corvel::Fuzz
