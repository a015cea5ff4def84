#include "corvel/platform/ScreenSize.h"

#include <sys/ioctl.h>

namespace Corvel::Platform {

bool QueryScreenSize(int descriptor, std::uint16_t& columns, std::uint16_t& rows) {
    winsize size = {};
    if (::ioctl(descriptor, TIOCGWINSZ, &size) != 0) {
        return false;
    }
    columns = size.ws_col;
    rows = size.ws_row;
    return true;
}

}  // namespace Corvel::Platform
