#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

#include "corvel/autocli/formatters/Decimal.h"
#include "corvel/autocli/formatters/TextBuffer.h"

namespace Corvel::AutoCli {

/// One rendered cell. Like every text in a TextBuffer it may be read in whole blocks.
struct TableCell {
    std::string_view text;
    bool isRightAligned;
};

/// The rendered cells of a table, one after the other in one text, each behind its size: made once,
/// for the widths of the columns, and read once, in the same order.
class TableCells {
public:
    /// @return the size of the cell.
    std::size_t AddInteger(long value) {
        char* const head = _bytes.Room(1 + kMostDecimal);
        char* const end = PutDecimal(head + 1, value);
        const auto size = static_cast<std::size_t>(end - head) - 1;
        *head = Head(size, true);
        _bytes.EndAt(end);
        return size;
    }
    std::size_t Add(std::string_view text, bool isRightAligned) {
        const std::size_t size = text.size();
        char* at = _bytes.Room(1 + sizeof size + size);
        if (size < kLong) {
            *at++ = Head(size, isRightAligned);
            _bytes.EndAt(PutShort(at, text));
        } else {
            *at++ = Head(kLong, isRightAligned);
            std::memcpy(at, &size, sizeof size);
            _bytes.EndAt(Put(at + sizeof size, text));
        }
        return size;
    }

    /// Reads the cells, which must not grow meanwhile.
    class Reader {
    public:
        explicit Reader(const TableCells& cells) : _at(cells._bytes.View().data()) {}

        /// The next cell, which there must be.
        TableCell Next() {
            const auto head = static_cast<unsigned char>(*_at++);
            std::size_t size = head & kLong;
            if (size == kLong) {
                std::memcpy(&size, _at, sizeof size);
                _at += sizeof size;
            }
            const TableCell cell{{_at, size}, (head & kRightAligned) != 0};
            _at += size;
            return cell;
        }

    private:
        const char* _at;
    };

private:
    // The first byte: the size, or kLong when the size follows, and how the cell is aligned.
    static constexpr std::size_t kLong = 127;
    static constexpr std::size_t kRightAligned = 128;

    static char Head(std::size_t size, bool isRightAligned) {
        return static_cast<char>(isRightAligned ? size | kRightAligned : size);
    }

    TextBuffer _bytes;
};

}  // namespace Corvel::AutoCli
