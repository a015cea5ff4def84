#pragma once

#include <cstddef>
#include <ostream>
#include <string>

namespace Corvel::AutoCli {

/// Collects text for a stream and hands it on in large pieces. Writes unformatted, so that neither
/// the stream's width, fill, flags nor locale matter, and none of them changes.
class OutputBuffer {
public:
    explicit OutputBuffer(std::ostream& stream) : _stream(stream) {}

    /// Where to append.
    std::string& Text() { return _text; }

    /// Hands on what there is when it is worth a call; meant for the end of each line.
    void FlushIfLarge() {
        if (_text.size() >= kLarge) {
            Flush();
        }
    }

    void Flush() {
        _stream.write(_text.data(), static_cast<std::streamsize>(_text.size()));
        _text.clear();
    }

private:
    static constexpr std::size_t kLarge = std::size_t{64} * 1024;

    std::ostream& _stream;
    std::string _text;
};

}  // namespace Corvel::AutoCli
