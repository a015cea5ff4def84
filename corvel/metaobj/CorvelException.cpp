#include "corvel/metaobj/CorvelException.h"

namespace Corvel {

CorvelException::CorvelException(const std::string& message) : _message(message) {}

CorvelException::~CorvelException() = default;

const char* CorvelException::what() const noexcept {
    return _message.c_str();
}

}  // namespace Corvel
