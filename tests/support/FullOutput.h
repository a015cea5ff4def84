#pragma once

#include <errno.h>

#include <iostream>
#include <sstream>

namespace Corvel::Testing {

/// As long as it lives, what is written to std::cout goes to a disk that is full.
class FullOutput {
public:
    FullOutput() : _saved(std::cout.rdbuf(&_disk)) {}
    FullOutput(const FullOutput&) = delete;
    FullOutput& operator=(const FullOutput&) = delete;
    ~FullOutput() { std::cout.rdbuf(_saved); }

private:
    class Disk : public std::stringbuf {
    protected:
        int sync() override {
            errno = ENOSPC;
            return str().empty() ? 0 : -1;
        }
    };

    Disk _disk;
    std::streambuf* _saved;
};

/// What is told of it.
constexpr const char* kFullOutputMessage =
    "Unable to write to standard output: No space left on device\n";

}  // namespace Corvel::Testing
