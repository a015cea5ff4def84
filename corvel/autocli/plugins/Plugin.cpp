#include "corvel/autocli/plugins/Plugin.h"

#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/metaobj/NullText.h"

namespace Corvel::AutoCli {

Plugin::Plugin() = default;

Plugin::~Plugin() = default;

bool Plugin::HasFormatter(const char* name) {
    return HasFormatter(std::string(MetaObj::TextOrEmpty(name)));
}

std::shared_ptr<Formatter> Plugin::GetFormatter(const char* name) {
    return GetFormatter(std::string(MetaObj::TextOrEmpty(name)));
}

const std::vector<std::shared_ptr<Formatter>>& Plugin::NoFormatters() {
    static const std::vector<std::shared_ptr<Formatter>> none;
    return none;
}

}  // namespace Corvel::AutoCli
