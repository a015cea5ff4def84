#include "corvel/autocli/plugins/Panic.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace Corvel::AutoCli {

namespace {

// Static, because the stack may be what is broken.
char message[256];

}  // namespace

void Panic(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    std::fprintf(stderr, "panic: %s", message);
    std::fflush(stderr);
    std::abort();
}

}  // namespace Corvel::AutoCli
