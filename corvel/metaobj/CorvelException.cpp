#include "corvel/metaobj/CorvelException.h"

#include "corvel/metaobj/NullText.h"

namespace Corvel {

CorvelException::CorvelException(const char* message) : _message(MetaObj::TextOrEmpty(message)) {}

CorvelException::CorvelException(const std::string& message) : _message(message) {}

CorvelException::~CorvelException() = default;

const char* CorvelException::what() const noexcept {
    return _message.c_str();
}

}  // namespace Corvel
