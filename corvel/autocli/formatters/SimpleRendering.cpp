#include "corvel/autocli/formatters/SimpleRendering.h"

#include <algorithm>

#include <boost/algorithm/string/replace.hpp>

#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/TextRendering.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaStruct.h"

namespace Corvel::AutoCli {

using MetaObj::MetaStruct;
using MetaObj::MetaType;
using MetaObj::ValueKind;
using MetaObj::ValueView;

namespace {

constexpr std::string_view kNoHeader = "<NONE>";
constexpr std::string_view kFieldIndent = "   ";
/// How much deeper a nested value stands than its structure, a list's item than its list.
constexpr int kNestedLevels = 2;
constexpr int kItemLevels = 1;

}  // namespace

std::string_view FindHeaderTag(std::string_view header) {
    const std::size_t close = header.rfind('%');
    if (close == std::string_view::npos || close < 2) {
        return {};
    }
    const std::size_t open = header.rfind('%', close - 2);
    return open == std::string_view::npos ? std::string_view()
                                          : header.substr(open + 1, close - open - 1);
}

SimpleRendering::SimpleRendering(const FormatParameters& parameters, std::ostream& stream)
    : _parameters(parameters),
      _buffer(stream),
      _alignsFields(parameters.GetParameter("align-fields") == "true") {}

void SimpleRendering::Render(const ValueView& value, int level) {
    Begin(value, level);
    while (!_open.empty()) {
        std::visit([this](auto& open) { Continue(open); }, _open.back());
        _buffer.FlushIfLarge();
    }
    _buffer.Flush();
}

void SimpleRendering::Begin(const ValueView& value, int level) {
    switch (value.kind) {
        case ValueKind::Null:
            break;
        case ValueKind::Bool:
        case ValueKind::Int:
        case ValueKind::String:
            AppendValue(_out, value);
            _out += '\n';
            break;
        case ValueKind::Struct:
            BeginStruct(*value.structure, level);
            break;
        case ValueKind::List:
            BeginList(value, level);
            break;
        case ValueKind::Mismatch:
            ReportMismatch(value.type);
            break;
    }
}

void SimpleRendering::ReportMismatch(MetaType type) {
    switch (type) {
        case MetaType::Bool:
            _out += "Error reading a bool\n";
            break;
        case MetaType::Int:
            _out += "Error reading a int\n";
            break;
        case MetaType::String:
            _out += "Error reading a string\n";
            break;
        case MetaType::Struct:
            _out += "Error reading a struct from output.\n";
            break;
        case MetaType::List:
            _out += "Error reading a List\n";
            break;
    }
}

void SimpleRendering::BeginStruct(const MetaStruct& structure, int level) {
    TypePlan& plan = PlanOf(structure.GetTypeName());
    AppendHeader(plan, structure, level);
    OpenStruct open{MetaObj::StructView(structure), plan, 0, level};
    if (_alignsFields) {
        for (std::size_t i = 0; i < open.Count(); ++i) {
            open.nameWidth = std::max(open.nameWidth, open.Name(i).size());
        }
    }
    _open.emplace_back(std::move(open));
}

void SimpleRendering::BeginList(const ValueView& value, int level) {
    const MetaType itemType = value.list->GetListType();
    if (itemType == MetaType::Struct || itemType == MetaType::List) {
        _open.emplace_back(OpenList{value.list->GetObjects(), level});
    } else {
        AppendValue(_out, value);
        _out += '\n';
    }
}

void SimpleRendering::Continue(OpenStruct& open) {
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
        StyleOf(open.plan, name).Append(_out, value);
        _out += '\n';
    }
    _open.pop_back();
}

void SimpleRendering::Continue(OpenList& open) {
    _out += '\n';
    if (open.next == open.items.size()) {
        _open.pop_back();
        return;
    }
    const ValueView item = MetaObj::View(open.items[open.next].get());
    ++open.next;
    Begin(item, open.level + kItemLevels);
}

std::size_t SimpleRendering::OpenStruct::Count() const {
    return plan.fieldNames ? plan.fieldNames->size() : fields.Count();
}

const std::string& SimpleRendering::OpenStruct::Name(std::size_t i) const {
    return plan.fieldNames ? (*plan.fieldNames)[i] : fields.Name(i);
}

ValueView SimpleRendering::OpenStruct::Value(std::size_t i) const {
    return plan.fieldNames ? fields.Find((*plan.fieldNames)[i]) : fields.Value(i);
}

void SimpleRendering::AppendHeader(const TypePlan& plan, const MetaStruct& structure, int level) {
    const std::string* header = &plan.header;
    std::string replaced;
    if (!plan.headerTag.empty()) {
        const ValueView field = MetaObj::StructView(structure).Find(plan.headerTag);
        if (field.kind != ValueKind::Null) {
            std::string text;
            AppendValue(text, field);
            replaced = boost::replace_all_copy(plan.header, "%" + plan.headerTag + "%", text);
            header = &replaced;
        }
    }
    if (*header != kNoHeader) {
        AppendIndent(_out, level);
        _out += *header;
        _out += ":\n";
    }
}

SimpleRendering::TypePlan& SimpleRendering::PlanOf(const std::string& typeName) {
    if (_recentPlan == nullptr || _recentPlan->typeName != typeName) {
        auto found = _plans.find(typeName);
        if (found == _plans.end()) {
            found = _plans.emplace(typeName, MakePlan(typeName)).first;
        }
        _recentPlan = &found->second;
    }
    return *_recentPlan;
}

SimpleRendering::TypePlan SimpleRendering::MakePlan(const std::string& typeName) const {
    TypePlan plan;
    plan.typeName = typeName;
    for (const std::string& key : {"fields:" + typeName, std::string("fields")}) {
        if (!plan.fieldNames && _parameters.HasParameter(key)) {
            plan.fieldNames = _parameters.GetParameterAsList(key);
        }
    }
    const std::string headerKey = "header:" + typeName;
    if (_parameters.HasParameter(headerKey)) {
        plan.header = _parameters.GetParameter(headerKey);
        plan.headerTag = FindHeaderTag(plan.header);
    } else {
        plan.header = typeName;
    }
    plan.hasStyles = FieldStyle::IsAnySet(_parameters, typeName);
    return plan;
}

const FieldStyle& SimpleRendering::StyleOf(TypePlan& plan, const std::string& fieldName) {
    if (!plan.hasStyles) {
        return _plain;
    }
    const auto found = plan.styles.find(fieldName);
    if (found != plan.styles.end()) {
        return found->second;
    }
    return plan.styles.emplace(fieldName, FieldStyle(_parameters, plan.typeName, fieldName))
        .first->second;
}

}  // namespace Corvel::AutoCli
