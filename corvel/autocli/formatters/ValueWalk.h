#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "corvel/autocli/formatters/LeadCache.h"
#include "corvel/autocli/formatters/TextBuffer.h"
#include "corvel/metaobj/MetaList.h"
#include "corvel/metaobj/MetaObject.h"
#include "corvel/metaobj/MetaStruct.h"
#include "corvel/metaobj/ValueView.h"

namespace Corvel::AutoCli {

/// One field of a structure, as a walk tells of it.
struct FieldPlace {
    const std::string& name;
    /// The same for the same field of structures that share their names; good for a LeadCache.
    std::size_t place;
    bool isLast;
};

/// Walks a value and its descendants in depth-first order, fields in field order and items in list
/// order, and tells a writer what it meets. Values of any depth are safe: the walk keeps its place
/// in a stack of its own.
///
/// A writer has these operations; they nest, so that it may count levels in them. A scalar is
/// anything but a structure or a list: null and mismatch too.
///   Scalar(const ValueView&)           the root or an item
///   OpenStruct(const MetaStruct&)      then for each field either
///     Field(const FieldPlace&, const ValueView&)      a scalar, or
///     BeginField(const FieldPlace&), the structure or list, EndField(bool last)
///   CloseStruct()
///   OpenList(const MetaList&)          then for each item BeginItem(), the item, EndItem(bool last)
///   CloseList()
template <typename Writer>
class ValueWalk {
public:
    explicit ValueWalk(Writer& writer) : _writer(writer) {}

    void Run(const MetaObj::ValueView& root) {
        if (!IsContainer(root)) {
            _writer.Scalar(root);
            return;
        }
        Open(root);
        while (!_open.empty()) {
            Container& container = _open.back();
            if (container.fields) {
                Continue(container, *container.fields);
            } else {
                Continue(container, *container.items);
            }
        }
    }

private:
    using Items = std::vector<std::shared_ptr<MetaObj::MetaObject>>;

    /// A structure or list whose children are being written.
    struct Container {
        explicit Container(const MetaObj::MetaStruct& structure) : fields(structure) {}
        explicit Container(const MetaObj::MetaList& list) : items(&list.GetObjects()) {}

        std::optional<MetaObj::StructView> fields;
        const Items* items = nullptr;
        std::size_t next = 0;
    };

    static bool IsContainer(const MetaObj::ValueView& value) {
        return value.kind == MetaObj::ValueKind::Struct || value.kind == MetaObj::ValueKind::List;
    }

    void Open(const MetaObj::ValueView& value) {
        if (value.kind == MetaObj::ValueKind::Struct) {
            _writer.OpenStruct(*value.structure);
            _open.emplace_back(*value.structure);
        } else {
            _writer.OpenList(*value.list);
            _open.emplace_back(*value.list);
        }
    }

    /// Goes on until a child has children itself, which then is what is open last, or to the end. It
    /// is only for such a child that a structure or list is left and come back to.
    void Continue(Container& container, const MetaObj::StructView& fields) {
        const std::size_t count = fields.Count();
        const std::size_t place = LeadCache::PlaceOf(fields.LayoutIdentity());
        if (container.next > 0) {
            _writer.EndField(container.next == count);
        }
        for (std::size_t i = container.next; i < count; ++i) {
            const FieldPlace field{fields.Name(i), place + i, i + 1 == count};
            const MetaObj::ValueView value = fields.Value(i);
            if (IsContainer(value)) {
                container.next = i + 1;
                _writer.BeginField(field);
                Open(value);
                return;
            }
            _writer.Field(field, value);
        }
        _writer.CloseStruct();
        _open.pop_back();
    }

    void Continue(Container& container, const Items& items) {
        const std::size_t count = items.size();
        if (container.next > 0) {
            _writer.EndItem(container.next == count);
        }
        for (std::size_t i = container.next; i < count; ++i) {
            const MetaObj::ValueView value = MetaObj::View(items[i].get());
            _writer.BeginItem();
            if (IsContainer(value)) {
                container.next = i + 1;
                Open(value);
                return;
            }
            _writer.Scalar(value);
            _writer.EndItem(i + 1 == count);
        }
        _writer.CloseList();
        _open.pop_back();
    }

    Writer& _writer;
    std::vector<Container> _open;
};

/// Appends a value and its descendants with a Writer that is made from the buffer and `arguments`.
template <typename Writer, typename... Arguments>
void WriteValue(const MetaObj::MetaObject* value, TextBuffer& out, Arguments... arguments) {
    Writer writer(out, arguments...);
    ValueWalk(writer).Run(MetaObj::View(value));
}

/// What stands in the place of a value whose class is not the one of its type; `unknownType` when
/// there is no such type.
std::string_view MismatchText(MetaObj::MetaType type, std::string_view unknownType);

}  // namespace Corvel::AutoCli
