#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

namespace Corvel::AutoCli {

/// Writes a text to where there is room for it. @return where it ends.
inline char* Put(char* at, std::string_view text) {
    if (!text.empty()) {  // an empty view need not have an address
        std::memcpy(at, text.data(), text.size());
    }
    return at + text.size();
}

/// A text that grows at its end. Who writes many small things asks for room once and then writes
/// through a pointer:
///
///   char* at = text.Room(32);
///   *at++ = '"';
///   text.EndAt(at);
///
/// Ownership: owns its bytes; pointers and views into it hold until room is asked for.
/// Failures:  std::bad_alloc, with the text as it was.
class TextBuffer {
public:
    /// So many bytes behind the room that was asked for may be overwritten, so that texts can be
    /// copied in whole blocks; and so many behind the end of the text may be read.
    static constexpr std::size_t kSlack = 16;

    TextBuffer() = default;
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;
    virtual ~TextBuffer();

    std::size_t Size() const { return static_cast<std::size_t>(_end - _begin.get()); }
    std::string_view View() const { return {_begin.get(), Size()}; }
    void Clear() { _end = _begin.get(); }

    /// Where the text ends, with room for at least `size` more bytes.
    char* Room(std::size_t size) {
        // Deliberate: not even an empty text is written to where there is no room at all.
        if (static_cast<std::size_t>(_limit - _end) <= size) {
            MakeRoom(size);
        }
        return _end;
    }
    /// What was written into the room belongs to the text, up to here.
    void EndAt(char* end) { _end = end; }

    TextBuffer& operator+=(std::string_view text) {
        EndAt(Put(Room(text.size()), text));
        return *this;
    }
    TextBuffer& operator+=(char character) {
        char* const at = Room(1);
        *at = character;
        EndAt(at + 1);
        return *this;
    }
    void Fill(std::size_t count, char character);

protected:
    std::size_t Capacity() const { return static_cast<std::size_t>(_limit - _begin.get()); }
    /// Called when there is too little: makes room for at least `size` more bytes.
    virtual void MakeRoom(std::size_t size);

private:
    struct Free {
        void operator()(char* bytes) const { std::free(bytes); }
    };

    std::unique_ptr<char, Free> _begin;
    char* _end = nullptr;
    char* _limit = nullptr;  // the slack is behind it
};

/// The same for a text that is short as a rule: does not call memcpy for it.
inline char* PutShort(char* at, std::string_view text) {
    const std::size_t size = text.size();
    const char* const from = text.data();
    // Two blocks that may overlap cover every size between one block and two.
    if (size >= 32) {
        std::memcpy(at, from, size);
    } else if (size >= 16) {
        std::memcpy(at, from, 16);
        std::memcpy(at + size - 16, from + size - 16, 16);
    } else if (size >= 8) {
        std::memcpy(at, from, 8);
        std::memcpy(at + size - 8, from + size - 8, 8);
    } else if (size >= 4) {
        std::memcpy(at, from, 4);
        std::memcpy(at + size - 4, from + size - 4, 4);
    } else if (size > 0) {
        at[0] = from[0];
        at[size / 2] = from[size / 2];
        at[size - 1] = from[size - 1];
    }
    return at + size;
}

/// The same for a text with TextBuffer::kSlack readable bytes behind it, to where there is as much
/// room beyond it: copies whole blocks.
inline char* PutBlocks(char* at, std::string_view text) {
    for (std::size_t i = 0; i < text.size(); i += TextBuffer::kSlack) {
        std::memcpy(at + i, text.data() + i, TextBuffer::kSlack);
    }
    return at + text.size();
}

/// Writes a character so many times, in whole blocks like PutBlocks().
inline char* PutFill(char* at, std::size_t count, char character) {
    for (std::size_t i = 0; i < count; i += TextBuffer::kSlack) {
        std::memset(at + i, character, TextBuffer::kSlack);
    }
    return at + count;
}

inline void TextBuffer::Fill(std::size_t count, char character) {
    EndAt(PutFill(Room(count), count, character));
}

}  // namespace Corvel::AutoCli
