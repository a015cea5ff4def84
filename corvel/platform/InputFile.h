#pragma once

#include <ext/stdio_filebuf.h>
#include <istream>
#include <string>

namespace Corvel::Platform {

/// A file opened for reading as a stream, which children do not inherit.
class InputFile final {
public:
    /// A directory counts as a file that cannot be opened.
    explicit InputFile(const std::string& path);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    bool IsOpen() const { return _buffer.is_open(); }
    std::istream& Stream() { return _stream; }

private:
    __gnu_cxx::stdio_filebuf<char> _buffer;
    std::istream _stream;
};

}  // namespace Corvel::Platform
