#include "corvel/autocli/formatters/SimpleRendering.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <boost/algorithm/string/replace.hpp>

#include "corvel/autocli/formatters/FieldFinder.h"
#include "corvel/autocli/formatters/FieldStyle.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/LeadCache.h"
#include "corvel/autocli/formatters/OutputBuffer.h"
#include "corvel/autocli/formatters/ScalarText.h"
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
constexpr std::string_view kNameEnd = ": ";
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
            if (!_choosesFields && parameters.HasParameter(key)) {
                _choosesFields = true;
                for (const std::string& name : parameters.GetParameterAsList(key)) {
                    _chosenFields.emplace_back(name);
                }
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
    std::vector<FieldFinder>* ChosenFields() { return _choosesFields ? &_chosenFields : nullptr; }

    /// The header with its tag.
    const std::string& Header() const { return _header; }
    bool HasHeaderTag() const { return !_headerTag.empty(); }

    /// The header with the value of a field in the place of its tag.
    std::string HeaderOf(const MetaObj::StructView& fields) const {
        const ValueView field = fields.Find(_headerTag);
        if (field.kind == ValueKind::Null) {
            return _header;
        }
        TextBuffer text;
        AppendValue(text, field);
        return boost::replace_all_copy(_header, "%" + _headerTag + "%", text.View());
    }

    /// Whether a field of the type may be rendered other than as it is.
    bool HasStyles() const { return _hasStyles; }
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
    bool _choosesFields = false;
    std::vector<FieldFinder> _chosenFields;
    std::string _header;
    std::string _headerTag;
    bool _hasStyles;
    std::map<std::string, FieldStyle> _styles;  // made at first use
};

/// A structure whose printing has begun.
struct OpenStruct {
    OpenStruct(const MetaStruct& structure, TypePlan& structurePlan, int structureLevel)
        : fields(structure), plan(structurePlan), level(structureLevel) {}

    MetaObj::StructView fields;
    TypePlan& plan;
    int level;
    std::size_t nameWidth = 0;
    std::size_t next = 0;
};

/// A list of structures whose printing has begun.
struct OpenList {
    const std::vector<std::shared_ptr<MetaObject>>& items;
    int level;
    std::size_t next = 0;
};

bool IsScalar(const ValueView& value) {
    return value.kind == ValueKind::Bool || value.kind == ValueKind::Int ||
           value.kind == ValueKind::String;
}

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
                // NOLINTNEXTLINE(clang-analyzer-core.NonNullParamChecker): this kind has a structure
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
        _open.emplace_back(std::in_place_type<OpenStruct>, structure, plan, level);
        auto& open = std::get<OpenStruct>(_open.back());
        if (plan.HasHeaderTag()) {
            AppendHeader(_out, plan.HeaderOf(open.fields), level);
        } else {
            AppendShort(_out, HeaderLine(plan, level));
        }
        if (_alignsFields) {
            open.nameWidth = LongestName(open);
        }
    }

    static std::size_t LongestName(const OpenStruct& open) {
        std::size_t longest = 0;
        if (const std::vector<FieldFinder>* chosen = open.plan.ChosenFields(); chosen != nullptr) {
            for (const FieldFinder& field : *chosen) {
                longest = std::max(longest, field.Name().size());
            }
        } else {
            for (std::size_t i = 0; i < open.fields.Count(); ++i) {
                longest = std::max(longest, open.fields.Name(i).size());
            }
        }
        return longest;
    }

    /// The line for a header without tag; nothing when it is not shown.
    std::string_view HeaderLine(const TypePlan& plan, int level) {
        return _leads.Get(LeadCache::PlaceOf(&plan), level, &plan, [&](TextBuffer& line) {
            AppendHeader(line, plan.Header(), level);
        });
    }

    static void AppendHeader(TextBuffer& out, std::string_view header, int level) {
        if (header != kNoHeader) {
            AppendIndent(out, level);
            out += header;
            out += ":\n";
        }
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
        std::vector<FieldFinder>* const chosen = open.plan.ChosenFields();
        const std::size_t count = chosen == nullptr ? open.fields.Count() : chosen->size();
        const bool isPlain = !_alignsFields && !open.plan.HasStyles();
        const std::size_t place = LeadCache::PlaceOf(open.fields.LayoutIdentity());
        for (std::size_t i = open.next; i < count; ++i) {
            FieldFinder* const finder = chosen == nullptr ? nullptr : &(*chosen)[i];
            const std::string& name = finder == nullptr ? open.fields.Name(i) : finder->Name();
            const ValueView value =
                finder == nullptr ? open.fields.Value(i) : finder->Find(open.fields);
            if (isPlain && IsScalar(value)) {
                AppendPlainField(Lead(open.level, name, place + i), value);
            } else if (value.kind == ValueKind::Null) {
                _out += "Error getting field ";
                _out += name;
                _out += '\n';
                break;
            } else if (value.type == MetaType::Struct || value.type == MetaType::List) {
                open.next = i + 1;
                AppendName(open, name, place + i);
                if (value.type == MetaType::Struct) {
                    _out += '\n';
                }
                Begin(value, open.level + kNestedLevels);
                return;
            } else {
                AppendName(open, name, place + i);
                open.plan.StyleOf(name).Append(_out, value);
                _out += '\n';
            }
        }
        _open.pop_back();
    }

    void AppendPlainField(std::string_view lead, const ValueView& value) {
        char* const at = PutBlocks(_out.Room(lead.size() + kScalarRoom), lead);
        _out.EndAt(Put(PutScalar(at, value), "\n"));
    }

    char* PutScalar(char* at, const ValueView& value) {
        switch (value.kind) {
            case ValueKind::Bool:
                return PutBool(at, value.boolean, "true", "false");
            case ValueKind::Int:
                return PutDecimal(at, value.integer);
            case ValueKind::String:
                return PutText(_out, at, value.text);
            default:  // no scalar
                _out.EndAt(at);
                AppendValue(_out, value);
                return _out.Room(kRoomBehind);
        }
    }

    /// What stands before a value, as far as it is the same for structures alike.
    std::string_view Lead(int level, const std::string& name, std::size_t place) {
        return _leads.Get(place, level, &name, [&](TextBuffer& lead) {
            AppendIndent(lead, level);
            lead += kFieldIndent;
            lead += name;
            if (!_alignsFields) {
                lead += kNameEnd;
            }
        });
    }

    void AppendName(const OpenStruct& open, const std::string& name, std::size_t place) {
        _out += Lead(open.level, name, place);
        if (_alignsFields) {
            _out.Fill(open.nameWidth - name.size(), ' ');
            _out += kNameEnd;
        }
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
        // Structures alike share their type name, so that its address says enough as a rule.
        if (_recentTypeName != &typeName) {
            if (_recentPlan == nullptr || _recentPlan->TypeName() != typeName) {
                _recentPlan = &_plans.try_emplace(typeName, _parameters, typeName).first->second;
            }
            _recentTypeName = &typeName;
        }
        return *_recentPlan;
    }

    const FormatParameters& _parameters;
    const bool _alignsFields;
    std::map<std::string, TypePlan> _plans;  // by type name
    const std::string* _recentTypeName = nullptr;
    TypePlan* _recentPlan = nullptr;
    std::vector<std::variant<OpenStruct, OpenList>> _open;
    LeadCache _leads;
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
