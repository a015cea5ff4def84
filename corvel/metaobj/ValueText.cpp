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
        Begin(value);
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

    void Begin(const MetaObject& value) {
        const ValueView view = View(&value);
        switch (view.kind) {
            case ValueKind::Bool:
                _text += view.boolean ? "true" : "false";
                break;
            case ValueKind::Int:
                AppendInt(_text, view.integer);
                break;
            case ValueKind::String:
                _text += view.text;
                break;
            case ValueKind::Struct:
                _text += '{';
                _open.push_back({StructView(*view.structure)});
                break;
            case ValueKind::List:
                _open.push_back({std::nullopt, view.list});
                break;
            case ValueKind::Mismatch:
            case ValueKind::Null:  // containers hold no null
                _text += value.ToString();
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
        Begin(*open.fields->Reference(field));
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
        Begin(*items[item]);
    }

    std::string& _text;
    std::vector<Container> _open;
};

}  // namespace

void AppendText(std::string& text, const MetaObject& value) {
    TextWriter(text).Write(value);
}

}  // namespace Corvel::MetaObj
