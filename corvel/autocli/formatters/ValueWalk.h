#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "corvel/autocli/formatters/OutputBuffer.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::AutoCli {

/// Walks a value and its descendants in depth-first order, fields in field order and items in list
/// order, and tells a writer what it meets. Values of any depth are safe: the walk keeps its place
/// in a stack of its own.
///
/// A writer has these operations; they nest, so that it may count levels in them:
///   Scalar(const ValueView&)        anything but a structure or a list: null and mismatch too
///   OpenStruct(const MetaStruct&)   then for each field BeginField(const std::string& name), the
///   CloseStruct()                   field's value, EndField(bool last)
///   OpenList(const MetaList&)       then for each item BeginItem(), the item, EndItem(bool last)
///   CloseList()
template <typename Writer>
class ValueWalk {
public:
    /// @param buffer  what the writer appends to; handed on to its stream as it grows.
    ValueWalk(Writer& writer, OutputBuffer& buffer) : _writer(writer), _buffer(buffer) {}

    void Run(const MetaObj::MetaObject* root) {
        Begin(MetaObj::View(root));
        while (!_open.empty()) {
            Container& container = _open.back();
            if (container.next > 0) {
                EndChild(container);
            }
            if (container.next == container.count) {
                Close(container);
                _open.pop_back();
            } else {
                Begin(BeginNextChild(container));
            }
            _buffer.FlushIfLarge();
        }
    }

private:
    /// A structure or list whose children are being written. Each return to it, but the first, says
    /// that a child is complete.
    struct Container {
        explicit Container(const MetaObj::MetaStruct& structure)
            : fields(structure), count(fields->Count()) {}
        explicit Container(const MetaObj::MetaList& list)
            : items(&list.GetObjects()), count(items->size()) {}

        std::optional<MetaObj::StructView> fields;
        const std::vector<std::shared_ptr<MetaObj::MetaObject>>* items = nullptr;
        std::size_t next = 0;
        std::size_t count;
    };

    void Begin(const MetaObj::ValueView& value) {
        if (value.kind == MetaObj::ValueKind::Struct) {
            _writer.OpenStruct(*value.structure);
            _open.emplace_back(*value.structure);
        } else if (value.kind == MetaObj::ValueKind::List) {
            _writer.OpenList(*value.list);
            _open.emplace_back(*value.list);
        } else {
            _writer.Scalar(value);
        }
    }

    MetaObj::ValueView BeginNextChild(Container& container) {
        const std::size_t index = container.next++;
        if (container.fields) {
            _writer.BeginField(container.fields->Name(index));
            return container.fields->Value(index);
        }
        _writer.BeginItem();
        return MetaObj::View((*container.items)[index].get());
    }

    void EndChild(const Container& container) {
        const bool last = container.next == container.count;
        if (container.fields) {
            _writer.EndField(last);
        } else {
            _writer.EndItem(last);
        }
    }

    void Close(const Container& container) {
        if (container.fields) {
            _writer.CloseStruct();
        } else {
            _writer.CloseList();
        }
    }

    Writer& _writer;
    OutputBuffer& _buffer;
    std::vector<Container> _open;
};

/// What stands in the place of a value whose class is not the one of its type; `unknownType` when
/// there is no such type.
std::string_view MismatchText(MetaObj::MetaType type, std::string_view unknownType);

}  // namespace Corvel::AutoCli
