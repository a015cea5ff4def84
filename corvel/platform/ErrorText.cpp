#include "corvel/platform/ErrorText.h"

#include <array>
#include <cstring>

namespace Corvel::Platform {

std::string ErrorText(int error) {
    std::array<char, 256> buffer{};
    return strerror_r(error, buffer.data(), buffer.size());
}

}  // namespace Corvel::Platform
