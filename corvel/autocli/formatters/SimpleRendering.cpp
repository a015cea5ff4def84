#include "corvel/autocli/formatters/SimpleRendering.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <boost/algorithm/string/replace.hpp>

#include "corvel/autocli/formatters/FieldStyle.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/OutputBuffer.h"
#include "corvel/autocli/formatters/TextRendering.h"
#include "corvel/autocli/formatters/ValueWalk.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::AutoCli {

using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using MetaObj::MetaType;
using MetaObj::ValueKind;
using MetaObj::ValueView;

namespace {

constexpr std::string_view kNoHeader = "<NONE>";
constexpr std::string_view kFieldIndent = "   ";
/// How much deeper a nested value stands than its structure, and an item than its list.
constexpr int kNestedLevels = 2;
constexpr int kItemLevels = 1;

/// What the parameters say about one structure type.
class TypePlan {
public:
    TypePlan(const FormatParameters& parameters, const std::string& typeName)
        : _parameters(parameters),
          _typeName(typeName),
          _hasStyles(FieldStyle::IsAnySet(parameters, typeName)) {
        for (const std::string& key : {"fields:" + typeName, std::string("fields")}) {
            if (!_fieldNames && parameters.HasParameter(key)) {
                _fieldNames = parameters.GetParameterAsList(key);
            }
        }
        const std::string headerKey = "header:" + typeName;
        if (parameters.HasParameter(headerKey)) {
            _header = parameters.GetParameter(headerKey);
            _headerTag = FindHeaderTag(_header);
        } else {
            _header = typeName;
        }
    }

    const std::string& TypeName() const { return _typeName; }

    /// The chosen fields; null when all are to be printed.
    const std::vector<std::string>* FieldNames() const {
        return _fieldNames ? &*_fieldNames : nullptr;
    }

    std::string Header(const MetaStruct& structure) const {
        if (!_headerTag.empty()) {
            const ValueView field = MetaObj::StructView(structure).Find(_headerTag);
            if (field.kind != ValueKind::Null) {
                TextBuffer text;
                AppendValue(text, field);
                return boost::replace_all_copy(_header, "%" + _headerTag + "%", text.View());
            }
        }
        return _header;
    }

    const FieldStyle& StyleOf(const std::string& fieldName) {
        static const FieldStyle plain;
        if (!_hasStyles) {
            return plain;
        }
        const auto found = _styles.find(fieldName);
        return found != _styles.end()
                   ? found->second
                   : _styles.emplace(fieldName, FieldStyle(_parameters, _typeName, fieldName))
                         .first->second;
    }

private:
    const FormatParameters& _parameters;
    std::string _typeName;
    std::optional<std::vector<std::string>> _fieldNames;
    std::string _header;
    std::string _headerTag;
    bool _hasStyles;
    std::map<std::string, FieldStyle> _styles;  // made at first use
};

/// A structure whose printing has begun.
struct OpenStruct {
    MetaObj::StructView fields;
    TypePlan& plan;
    int level;
    std::size_t nameWidth = 0;
    std::size_t next = 0;

    std::size_t Count() const {
        return plan.FieldNames() != nullptr ? plan.FieldNames()->size() : fields.Count();
    }
    const std::string& Name(std::size_t i) const {
        return plan.FieldNames() != nullptr ? (*plan.FieldNames())[i] : fields.Name(i);
    }
    ValueView Value(std::size_t i) const {
        return plan.FieldNames() != nullptr ? fields.Find(Name(i)) : fields.Value(i);
    }
};

/// A list of structures whose printing has begun.
struct OpenList {
    const std::vector<std::shared_ptr<MetaObject>>& items;
    int level;
    std::size_t next = 0;
};

/// One printing of one value. Keeps the values that it is inside of on a stack of its own, so that
/// values of any depth can be printed.
class SimpleRendering {
public:
    SimpleRendering(const FormatParameters& parameters, std::ostream& stream)
        : _parameters(parameters),
          _alignsFields(parameters.GetParameter("align-fields") == "true"),
          _out(stream) {}

    void Write(const ValueView& value, int level) {
        Begin(value, level);
        while (!_open.empty()) {
            std::visit([this](auto& open) { Continue(open); }, _open.back());
        }
        _out.Flush();
    }

private:
    void Begin(const ValueView& value, int level) {
        switch (value.kind) {
            case ValueKind::Null:
                break;
            case ValueKind::Struct:
                BeginStruct(*value.structure, level);
                break;
            case ValueKind::List:
                BeginList(value, level);
                break;
            case ValueKind::Bool:
            case ValueKind::Int:
            case ValueKind::String:
                AppendLine(value);
                break;
            case ValueKind::Mismatch:
                AppendMismatch(value.type);
                break;
        }
    }

    void BeginStruct(const MetaStruct& structure, int level) {
        TypePlan& plan = PlanOf(structure.GetTypeName());
        const std::string header = plan.Header(structure);
        if (header != kNoHeader) {
            AppendIndent(_out, level);
            _out += header;
            _out += ":\n";
        }
        OpenStruct open{MetaObj::StructView(structure), plan, level};
        if (_alignsFields) {
            for (std::size_t i = 0; i < open.Count(); ++i) {
                open.nameWidth = std::max(open.nameWidth, open.Name(i).size());
            }
        }
        _open.emplace_back(std::move(open));
    }

    void BeginList(const ValueView& value, int level) {
        const MetaType itemType = value.list->GetListType();
        if (itemType == MetaType::Struct || itemType == MetaType::List) {
            _open.emplace_back(OpenList{value.list->GetObjects(), level});
        } else {
            AppendLine(value);
        }
    }

    /// Goes on to the next nested value, which then is what is open last, or closes the structure.
    void Continue(OpenStruct& open) {
        while (open.next < open.Count()) {
            const std::string& name = open.Name(open.next);
            const ValueView value = open.Value(open.next);
            ++open.next;
            if (value.kind == ValueKind::Null) {
                _out += "Error getting field ";
                _out += name;
                _out += '\n';
                break;
            }
            AppendIndent(_out, open.level);
            _out += kFieldIndent;
            AppendPadded(_out, name, open.nameWidth);
            _out += ": ";
            if (value.type == MetaType::Struct || value.type == MetaType::List) {
                if (value.type == MetaType::Struct) {
                    _out += '\n';
                }
                Begin(value, open.level + kNestedLevels);
                return;
            }
            open.plan.StyleOf(name).Append(_out, value);
            _out += '\n';
        }
        _open.pop_back();
    }

    /// Goes on to the next item, or closes the list.
    void Continue(OpenList& open) {
        _out += '\n';
        if (open.next == open.items.size()) {
            _open.pop_back();
            return;
        }
        const MetaObject* item = open.items[open.next].get();
        ++open.next;
        Begin(MetaObj::View(item), open.level + kItemLevels);
    }

    void AppendLine(const ValueView& value) {
        AppendValue(_out, value);
        _out += '\n';
    }

    void AppendMismatch(MetaType type) {
        const std::string_view text = MismatchText(type, "");
        if (!text.empty()) {
            _out += text;
            _out += '\n';
        }
    }

    TypePlan& PlanOf(const std::string& typeName) {
        if (_recentPlan == nullptr || _recentPlan->TypeName() != typeName) {
            _recentPlan = &_plans.try_emplace(typeName, _parameters, typeName).first->second;
        }
        return *_recentPlan;
    }

    const FormatParameters& _parameters;
    const bool _alignsFields;
    std::map<std::string, TypePlan> _plans;  // by type name
    TypePlan* _recentPlan = nullptr;
    std::vector<std::variant<OpenStruct, OpenList>> _open;
    OutputBuffer _out;
};

}  // namespace

void WriteSimple(const ValueView& value,
                 const FormatParameters& parameters,
                 std::ostream& stream,
                 int level) {
    SimpleRendering(parameters, stream).Write(value, level);
}

std::string_view FindHeaderTag(std::string_view header) {
    const std::size_t close = header.rfind('%');
    if (close == std::string_view::npos || close < 2) {
        return {};
    }
    const std::size_t open = header.rfind('%', close - 2);
    return open == std::string_view::npos ? std::string_view()
                                          : header.substr(open + 1, close - open - 1);
}

}  // namespace Corvel::AutoCli
