// The references for the formats that people read.

#include <algorithm>
#include <cstddef>
#include <map>
#include <sstream>
#include <vector>

#include <boost/regex.hpp>

#include "fuzz/formatters/Reference.h"

namespace Corvel::Fuzz {

using AutoCli::FormatParameters;
using MetaObj::MetaList;
using MetaObj::MetaStruct;
using MetaObj::MetaType;

namespace {

std::string Padded(const std::string& text, std::size_t width) {
    return text + std::string(width - std::min(width, text.size()), ' ');
}

std::string RightAligned(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

std::string Simple(const Value& value, FormatParameters& parameters, int level);

std::vector<std::string> FieldsOf(const MetaStruct& structure, const FormatParameters& parameters) {
    for (const std::string& key : {"fields:" + structure.GetTypeName(), std::string("fields")}) {
        if (parameters.HasParameter(key)) {
            return parameters.GetParameterAsList(key);
        }
    }
    const std::list<std::string> names = structure.GetFieldNames();
    return {names.begin(), names.end()};
}

std::string Header(const MetaStruct& structure, const FormatParameters& parameters) {
    static const boost::regex kTag(".*%(.+)%.*");
    const std::string key = "header:" + structure.GetTypeName();
    if (!parameters.HasParameter(key)) {
        return structure.GetTypeName();
    }
    std::string header = parameters.GetParameter(key);
    boost::smatch groups;
    if (!boost::regex_match(header, groups, kTag)) {
        return header;
    }
    const std::string name = groups[1];
    const Value field = structure.GetField(name);
    if (field == nullptr) {
        return header;
    }
    const std::string tag = "%" + name + "%";
    const std::string text = field->ToString();
    for (std::size_t at = header.find(tag); at != std::string::npos;
         at = header.find(tag, at + text.size())) {
        header.replace(at, tag.size(), text);
    }
    return header;
}

std::string SimpleStructure(const MetaStruct& structure, FormatParameters& parameters, int level) {
    const std::string indent = AutoCli::GetIndent(level);
    const std::vector<std::string> fields = FieldsOf(structure, parameters);
    std::size_t width = 0;
    for (const std::string& name : fields) {
        const bool isAligned = parameters.GetParameter("align-fields") == "true";
        width = isAligned ? std::max(width, name.size()) : 0;
    }
    const std::string header = Header(structure, parameters);
    std::string text = header == "<NONE>" ? "" : indent + header + ":\n";
    for (const std::string& name : fields) {
        const Value value = structure.GetField(name);
        if (value == nullptr) {
            return text + "Error getting field " + name + "\n";
        }
        text += indent + "   " + Padded(name, width) + ": ";
        if (value->GetType() == MetaType::Struct) {
            text += "\n" + Simple(value, parameters, level + 2);
        } else if (value->GetType() == MetaType::List) {
            text += Simple(value, parameters, level + 2);
        } else {
            text += AutoCli::AutoCli_FormatField(structure.GetTypeName(), name, value, parameters) +
                    "\n";
        }
    }
    return text;
}

/// @param room  for how many more values there is room.
bool TakesOnly(std::size_t& room, const Value& value, const FormatParameters& parameters) {
    if (room == 0) {
        return false;
    }
    --room;
    if (const auto* structure = dynamic_cast<const MetaStruct*>(value.get())) {
        const std::vector<std::string> fields = FieldsOf(*structure, parameters);
        return std::all_of(fields.begin(), fields.end(), [&](const std::string& name) {
            return TakesOnly(room, structure->GetField(name), parameters);
        });
    }
    if (const auto* list = dynamic_cast<const MetaList*>(value.get())) {
        const auto& items = list->GetObjects();
        return std::all_of(items.begin(), items.end(), [&](const Value& item) {
            return TakesOnly(room, item, parameters);
        });
    }
    return true;
}

std::string SimpleList(const MetaList& list, FormatParameters& parameters, int level) {
    if (list.GetListType() != MetaType::Struct && list.GetListType() != MetaType::List) {
        return list.ToString() + "\n";
    }
    std::string text;
    for (const Value& item : list.GetObjects()) {
        text += "\n" + Simple(item, parameters, level + 1);
    }
    return text + "\n";
}

std::string Simple(const Value& value, FormatParameters& parameters, int level) {
    if (value == nullptr) {
        return "";
    }
    if (value->GetType() == MetaType::Struct) {
        return SimpleStructure(dynamic_cast<const MetaStruct&>(*value), parameters, level);
    }
    if (value->GetType() == MetaType::List) {
        return SimpleList(dynamic_cast<const MetaList&>(*value), parameters, level);
    }
    return value->ToString() + "\n";
}

std::string Trimmed(const std::string& text) {
    constexpr const char* kBlanks = " \t\f\v\n\r";
    const std::size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string::npos
               ? ""
               : text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

/// One table, in the order in which it is made.
class Table {
public:
    Table(const MetaList& list, FormatParameters& parameters, int screenWidth)
        : _list(list), _parameters(parameters), _screenWidth(screenWidth) {
        _wraps = screenWidth != 0 && parameters.GetParameter("wrap-last") == "true";
    }

    bool Print() {
        ReadColumns();
        if (!Measure()) {
            return false;
        }
        PrintHeader();
        SumOthers();
        for (const Value& row : _list.GetObjects()) {
            PrintRow(std::dynamic_pointer_cast<MetaStruct>(row));
        }
        return true;
    }
    const std::string& Text() const { return _text; }

private:
    void ReadColumns() {
        const std::string typeName = _list.GetListStructure()->GetTypeName();
        for (const std::string& key :
             {"fields:" + typeName, std::string("fields"), std::string("table-columns")}) {
            if (_parameters.HasParameter(key)) {
                for (const std::string& column : _parameters.GetParameterAsList(key)) {
                    _columns.push_back(Trimmed(column));
                }
                return;
            }
        }
        for (const std::string& name : _list.GetListStructure()->GetFieldNames()) {
            _columns.push_back(Trimmed(name));
        }
    }

    std::string Cell(const std::shared_ptr<MetaStruct>& row,
                     const std::string& column,
                     const Value& value) {
        return AutoCli::AutoCli_FormatField(row->GetTypeName(), column, value, _parameters);
    }

    bool Measure() {
        for (const std::string& column : _columns) {
            _widths[column] = column.size() + 2;
        }
        for (const Value& item : _list.GetObjects()) {
            const auto row = std::dynamic_pointer_cast<MetaStruct>(item);
            for (const std::string& column : _columns) {
                const Value value = AutoCli::GetSubField(row, column);
                if (value == nullptr) {
                    _text += "Error: Unknown field in field list: " + column + "\n";
                    return false;
                }
                const std::size_t width = Cell(row, column, value).size() + 2;
                _widths[column] = std::max(_widths[column], width);
            }
        }
        return true;
    }

    void PrintHeader() {
        std::string shown = _parameters.GetParameter("show-header");
        shown = shown.empty() ? _parameters.GetParameter("table-header") : shown;
        if (shown == "false" || _columns.empty()) {
            return;
        }
        std::string line;
        for (std::size_t i = 0; i + 1 < _columns.size(); ++i) {
            _text += Padded(_columns[i], _widths[_columns[i]]);
            line += std::string(_widths[_columns[i]] - 2, '-') + "  ";
        }
        _text += _columns.back() + "\n";
        if (_parameters.GetParameter("header-line") != "false") {
            _text += line + std::string(_columns.back().size(), '-') + "\n";
        }
    }

    void SumOthers() {
        const std::string last = _columns.empty() ? "" : _columns.back();
        for (const std::string& column : _columns) {
            _others += column == last ? 0 : static_cast<int>(_widths[column]);
        }
        _wraps = _wraps && _screenWidth >= _others + static_cast<int>(last.size());
    }

    void PrintRow(const std::shared_ptr<MetaStruct>& row) {
        for (std::size_t i = 0; i < _columns.size(); ++i) {
            const bool isLast = i + 1 == _columns.size();
            const std::string& column = _columns[i];
            const Value value = AutoCli::GetSubField(row, column);
            if (_wraps && _others != 0 && isLast) {
                std::ostringstream fitted;
                AutoCli::AutoCli_FitString(
                    _others, _screenWidth, value->ToString(), true, fitted, false, 0, true);
                _text += fitted.str();
                continue;
            }
            const std::string cell = Cell(row, column, value);
            if (value->GetType() == MetaType::Int) {
                _text += RightAligned(cell, _widths[column] - 2) + "  ";
            } else {
                _text += isLast ? cell : Padded(cell, _widths[column]);
            }
        }
        _text += "\n";
    }

    const MetaList& _list;
    FormatParameters& _parameters;
    int _screenWidth;
    bool _wraps = false;
    std::vector<std::string> _columns;
    std::map<std::string, std::size_t> _widths;
    int _others = 0;  // the widths of the columns other than the last
    std::string _text;
};

}  // namespace

bool IsSimpleWithin(std::size_t mostValues,
                    const Value& value,
                    const FormatParameters& parameters) {
    return TakesOnly(mostValues, value, parameters);
}

std::string PrintSimple(const Value& value, FormatParameters& parameters) {
    const bool isList = value != nullptr && value->GetType() == MetaType::List;
    return Simple(value, parameters, isList ? -1 : 0);
}

std::string PrintTable(const Value& value,
                       FormatParameters& parameters,
                       int screenWidth,
                       bool& isComplete) {
    const auto list = std::dynamic_pointer_cast<MetaList>(value);
    if (list == nullptr || list->GetListType() != MetaType::Struct) {
        throw CorvelException(
            "Error: Unexpected type for output, formatter, table, expected a List of structs");
    }
    isComplete = true;
    if (list->GetListStructure() == nullptr) {
        return "";
    }
    Table table(*list, parameters, screenWidth);
    isComplete = table.Print();
    return table.Text();
}

}  // namespace Corvel::Fuzz
