#include "corvel/autocli/formatters/Formatter.h"

#include <utility>

namespace Corvel::AutoCli {

Formatter::Formatter() = default;

Formatter::Formatter(const char* name) : Formatter(name == nullptr ? std::string() : name) {}

Formatter::Formatter(const std::string& name) : _name(name) {}

Formatter::Formatter(std::string&& name) : _name(std::move(name)) {}

Formatter::~Formatter() = default;

const std::string& Formatter::GetName() const {
    return _name;
}

const std::string& Formatter::GetDescription() const {
    return _description;
}

const std::vector<FormatterParam>& Formatter::GetParams() const {
    return _params;
}

void Formatter::SetDescription(std::string description) {
    _description = std::move(description);
}

void Formatter::ReserveParams(std::size_t count) {
    _params.reserve(count);
}

void Formatter::AddParam(std::string name, std::string description, bool flag) {
    _params.push_back({std::move(name), std::move(description), flag});
}

}  // namespace Corvel::AutoCli
