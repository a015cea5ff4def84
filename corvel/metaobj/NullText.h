#pragma once

namespace Corvel::MetaObj {

/// A null C string counts as the empty text wherever the library takes one.
inline const char* TextOrEmpty(const char* text) {
    return text == nullptr ? "" : text;
}

}  // namespace Corvel::MetaObj
