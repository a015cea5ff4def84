#include "corvel/metaobj/MissingDocumentation.h"

#include <new>

namespace Corvel::MetaObj {

namespace {

// Made on first use, because other libraries may ask before our initialisers have run.
std::string& Text() {
    static std::string sText;
    return sText;
}

}  // namespace

const std::string& MissingDocumentation() {
    static const std::string& sFilled = Text() = "Documentation missing";
    return sFilled;
}

const std::string& MissingDocumentationAtLoad() noexcept {
    try {
        return MissingDocumentation();
    } catch (const std::bad_alloc&) {
        return Text();
    }
}

}  // namespace Corvel::MetaObj
