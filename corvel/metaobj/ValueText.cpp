#include "corvel/metaobj/ValueText.h"

#include <charconv>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::MetaObj {

namespace {

void AppendInt(std::string& text, long value) {
    constexpr std::size_t kSignAndDigits = std::numeric_limits<long>::digits10 + 2;
    char digits[kSignAndDigits];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof(digits), value);
    text.append(digits, end.ptr);
}

class TextWriter {
public:
    explicit TextWriter(std::string& text) : _text(text) {}

    void Write(const MetaObject& value) {
        Begin(View(&value));
        while (!_open.empty()) {
            if (_open.back().fields) {
                GoOnInStruct(_open.back());
            } else {
                GoOnInList(_open.back());
            }
        }
    }

private:
    // A structure or list that is not written to its end.
    struct Container {
        std::optional<StructView> fields;
        const MetaList* list = nullptr;
        std::size_t next = 0;
    };

    void Begin(const ValueView& value) {
        switch (value.kind) {
            case ValueKind::Bool:
                _text += value.boolean ? "true" : "false";
                break;
            case ValueKind::Int:
                AppendInt(_text, value.integer);
                break;
            case ValueKind::String:
                _text += value.text;
                break;
            case ValueKind::Struct:
                _text += '{';
                _open.push_back({StructView(*value.structure)});
                break;
            case ValueKind::List:
                _open.push_back({std::nullopt, value.list});
                break;
            case ValueKind::Mismatch:
                _text += value.object->ToString();
                break;
            case ValueKind::Null:  // there is none in containers
                break;
        }
    }

    void GoOnInStruct(Container& open) {
        if (open.next > 0) {
            _text += "', ";
        }
        if (open.next == open.fields->Count()) {
            _text += '}';
            _open.pop_back();
            return;
        }
        const std::size_t field = open.next++;
        _text.append("'").append(open.fields->Name(field)).append("' => '");
        Begin(open.fields->Value(field));
    }

    void GoOnInList(Container& open) {
        const auto& items = open.list->GetObjects();
        if (open.next == items.size()) {
            _open.pop_back();
            return;
        }
        const std::size_t item = open.next++;
        if (item > 0) {
            _text += ", ";
        }
        Begin(View(items[item].get()));
    }

    std::string& _text;
    std::vector<Container> _open;
};

}  // namespace

void AppendText(std::string& text, const MetaObject& value) {
    TextWriter(text).Write(value);
}

}  // namespace Corvel::MetaObj
