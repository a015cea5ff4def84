#include "corvel/autocli/formatters/TableRendering.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/trim.hpp>

#include "corvel/autocli/formatters/DisplayContext.h"
#include "corvel/autocli/formatters/FieldFinder.h"
#include "corvel/autocli/formatters/FieldRendering.h"
#include "corvel/autocli/formatters/FieldStyle.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/OutputBuffer.h"
#include "corvel/autocli/formatters/TableCells.h"
#include "corvel/autocli/formatters/TextBuffer.h"
#include "corvel/autocli/formatters/TextRendering.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::AutoCli {

using MetaObj::MetaObject;
using MetaObj::MetaStruct;
using MetaObj::MetaType;
using MetaObj::ValueKind;
using MetaObj::ValueView;

namespace {

/// What stands between two columns, and is part of the width of the first.
constexpr std::size_t kGap = 2;

/// One position of a row. Columns of the same name have the same cells.
struct Column {
    explicit Column(std::string name)
        : field(std::move(name)),
          isPath(Name().find('.') != std::string::npos),
          width(Name().size() + kGap) {}

    const std::string& Name() const { return field.Name(); }

    FieldFinder field;
    bool isPath;
    /// Of the longest cell or the name, and the gap.
    std::size_t width;
};

std::vector<Column> ReadColumns(const FormatParameters& parameters, const MetaStruct& definition) {
    std::vector<std::string> names;
    const std::string keys[] = {"fields:" + definition.GetTypeName(), "fields", "table-columns"};
    const auto* key = std::find_if(std::begin(keys), std::end(keys), [&](const std::string& each) {
        return parameters.HasParameter(each);
    });
    if (key != std::end(keys)) {
        names = parameters.GetParameterAsList(*key);
    } else {
        const auto all = definition.GetFieldNames();
        names.assign(all.begin(), all.end());
    }
    std::vector<Column> columns;
    for (std::string& name : names) {
        boost::trim_if(name, boost::is_any_of(" \t\f\v\n\r"));
        columns.emplace_back(std::move(name));
    }
    return columns;
}

bool IsHeaderShown(const FormatParameters& parameters) {
    const std::string& shown = parameters.GetParameter("show-header");
    return (shown.empty() ? parameters.GetParameter("table-header") : shown) != "false";
}

/// One printing of one table: every cell is rendered and measured before anything is written.
class TableRendering {
public:
    TableRendering(const std::vector<std::shared_ptr<MetaObject>>& rows,
                   const MetaStruct& definition,
                   const FormatParameters& parameters,
                   const DisplayContext& display,
                   std::ostream& stream)
        : _rows(rows),
          _parameters(parameters),
          _screenWidth(display.width),
          _columns(ReadColumns(parameters, definition)),
          _out(stream) {}

    bool Write() {
        bool isComplete = RenderCells();
        if (isComplete) {
            WriteHeader();
            isComplete = WriteRows();
        }
        _out.Flush();
        return isComplete;
    }

private:
    bool RenderCells() {
        for (const std::shared_ptr<MetaObject>& row : _rows) {
            const MetaStruct* structure = MetaObj::View(row.get()).structure;
            if (structure == nullptr) {
                _out += "Error: Unexpected type, unable to get struct from list\n";
                return false;
            }
            if (!RenderRow(row, *structure)) {
                return false;
            }
        }
        return true;
    }

    bool RenderRow(const std::shared_ptr<MetaObject>& row, const MetaStruct& structure) {
        const MetaObj::StructView fields(structure);
        const std::vector<FieldStyle>& styles = StylesOf(structure.GetTypeName());
        std::shared_ptr<MetaObject> nested;
        for (std::size_t i = 0; i < _columns.size(); ++i) {
            Column& column = _columns[i];
            const ValueView value = Find(row, fields, column, nested);
            if (value.kind == ValueKind::Null) {
                _out += "Error: Unknown field in field list: " + column.Name() + "\n";
                return false;
            }
            const std::size_t size = RenderCell(value, styles[i]);
            column.width = std::max(column.width, size + kGap);
        }
        return true;
    }

    /// @return the size of the cell.
    std::size_t RenderCell(const ValueView& value, const FieldStyle& style) {
        if (style.IsPlain() && value.kind == ValueKind::Int) {
            return _cells.AddInteger(value.integer);
        }
        if (style.IsPlain() && value.kind == ValueKind::String) {
            return _cells.Add(value.text, false);
        }
        _styled.Clear();
        style.Append(_styled, value);
        return _cells.Add(_styled.View(), value.type == MetaType::Int);
    }

    /// @param fields  those of the row.
    /// @param nested  keeps what a dotted path leads to.
    static ValueView Find(const std::shared_ptr<MetaObject>& row,
                          const MetaObj::StructView& fields,
                          Column& column,
                          std::shared_ptr<MetaObject>& nested) {
        if (!column.isPath) {
            return column.field.Find(fields);
        }
        nested = GetSubField(std::static_pointer_cast<MetaStruct>(row), column.Name());
        return MetaObj::View(nested.get());
    }

    /// One style for each column.
    const std::vector<FieldStyle>& StylesOf(const std::string& typeName) {
        if (_recentStyles == nullptr || _recentStyles->first != typeName) {
            const auto [found, isNew] = _styles.try_emplace(typeName);
            if (isNew) {
                for (const Column& column : _columns) {
                    found->second.emplace_back(_parameters, typeName, column.Name());
                }
            }
            _recentStyles = &*found;
        }
        return _recentStyles->second;
    }

    void WriteHeader() {
        if (_columns.empty() || !IsHeaderShown(_parameters)) {
            return;
        }
        for (const Column& column : _columns) {
            AppendPadded(_out, column.Name(), IsLast(column) ? 0 : column.width);
        }
        _out += '\n';
        if (_parameters.GetParameter("header-line") != "false") {
            WriteHeaderLine();
        }
    }

    /// Deliberate: the last column is underlined as far as its name goes, not its cells.
    void WriteHeaderLine() {
        for (const Column& column : _columns) {
            if (IsLast(column)) {
                _out.Fill(column.Name().size(), '-');
            } else {
                _out.Fill(column.width - kGap, '-');
                _out.Fill(kGap, ' ');
            }
        }
        _out += '\n';
    }

    bool WriteRows() {
        const std::size_t wrapIndent = WrapIndent();
        TableCells::Reader cells(_cells);
        for (const std::shared_ptr<MetaObject>& row : _rows) {
            for (Column& column : _columns) {
                const TableCell cell = cells.Next();
                if (wrapIndent == 0 || !IsLast(column)) {
                    WriteCell(cell, column);
                } else if (!WriteWrapped(row, column, static_cast<int>(wrapIndent))) {
                    return false;
                }
            }
            _out += '\n';
        }
        return true;
    }

    void WriteCell(const TableCell& cell, const Column& column) {
        const std::size_t size = cell.text.size();
        char* at = _out.Room(column.width);
        if (cell.isRightAligned) {
            at = PutFill(at, column.width - kGap - size, ' ');
            at = PutBlocks(at, cell.text);
            at = PutFill(at, kGap, ' ');
        } else {
            at = PutBlocks(at, cell.text);
            if (!IsLast(column)) {
                at = PutFill(at, column.width - size, ' ');
            }
        }
        _out.EndAt(at);
    }

    /// Deliberate: a wrapped cell is the plain text of its value, without printf and units.
    bool WriteWrapped(const std::shared_ptr<MetaObject>& row, Column& column, int indent) {
        const MetaObj::StructView fields(*MetaObj::View(row.get()).structure);
        std::shared_ptr<MetaObject> nested;
        const ValueView value = Find(row, fields, column, nested);
        if (value.kind == ValueKind::Null) {
            _out += "Unknown column " + column.Name();
            return false;
        }
        TextBuffer text;
        AppendValue(text, value);
        AppendFittedLines(_out, text.View(), {indent, _screenWidth, true});
        return true;
    }

    /// Where the lines of the last column begin when it is to be wrapped, otherwise 0.
    std::size_t WrapIndent() const {
        if (_screenWidth == 0 || _columns.empty() ||
            _parameters.GetParameter("wrap-last") != "true") {
            return 0;
        }
        const std::string& lastName = _columns.back().Name();
        std::size_t indent = 0;
        for (const Column& column : _columns) {
            indent += column.Name() == lastName ? 0 : column.width;
        }
        const bool hasRoom = indent + lastName.size() <= static_cast<std::size_t>(_screenWidth);
        return hasRoom ? indent : 0;
    }

    bool IsLast(const Column& column) const { return &column == &_columns.back(); }

    const std::vector<std::shared_ptr<MetaObject>>& _rows;
    const FormatParameters& _parameters;
    const int _screenWidth;
    std::vector<Column> _columns;
    std::map<std::string, std::vector<FieldStyle>> _styles;  // by type name of a row
    const std::pair<const std::string, std::vector<FieldStyle>>* _recentStyles = nullptr;
    TableCells _cells;
    TextBuffer _styled;  // one cell
    OutputBuffer _out;
};

}  // namespace

bool WriteTable(const std::vector<std::shared_ptr<MetaObject>>& rows,
                const MetaStruct& definition,
                const FormatParameters& parameters,
                const DisplayContext& display,
                std::ostream& stream) {
    return TableRendering(rows, definition, parameters, display, stream).Write();
}

}  // namespace Corvel::AutoCli
