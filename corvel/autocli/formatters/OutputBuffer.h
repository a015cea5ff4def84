#pragma once

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string_view>

#include "corvel/autocli/formatters/TextBuffer.h"

namespace Corvel::AutoCli {

/// Collects text for a stream and hands it on in large pieces, whenever its room is used up. Writes
/// unformatted, so that neither the stream's width, fill, flags nor locale matter, and none of them
/// changes.
class OutputBuffer final : public TextBuffer {
public:
    explicit OutputBuffer(std::ostream& stream) : _stream(stream) {}

    /// Hands on what is left. Not done by the destructor: what fails half-way is not written.
    void Flush() {
        const std::string_view text = View();
        _stream.write(text.data(), static_cast<std::streamsize>(text.size()));
        Clear();
    }

protected:
    void MakeRoom(std::size_t size) override {
        if (Size() >= kLarge) {
            Flush();
        }
        if (Capacity() - Size() <= size) {
            TextBuffer::MakeRoom(Capacity() == 0 ? std::max(size, kLarge + kSpare) : size);
        }
    }

private:
    static constexpr std::size_t kLarge = std::size_t{64} * 1024;
    /// More than one asks for as a rule, so that a piece is large when the room is used up.
    static constexpr std::size_t kSpare = std::size_t{4} * 1024;

    std::ostream& _stream;
};

}  // namespace Corvel::AutoCli
