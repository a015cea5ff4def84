#include "corvel/autocli/CommandInput.h"

#include <boost/algorithm/string/join.hpp>

#include "corvel/metaobj/NullText.h"

namespace Corvel::AutoCli {

std::shared_ptr<CommandInput> CommandInput::New() {
    return std::make_shared<CommandInput>();
}

CommandInput::CommandInput() = default;

CommandInput::~CommandInput() = default;

void CommandInput::SetDispatcher(const char* dispatcher) {
    _dispatcher = MetaObj::TextOrEmpty(dispatcher);
}

void CommandInput::SetDispatcher(const std::string& dispatcher) {
    _dispatcher = dispatcher;
}

const std::string& CommandInput::GetDispatcher() const {
    return _dispatcher;
}

void CommandInput::SetCommandPath(const std::list<std::string>& path) {
    _commandPath = path;
}

const std::list<std::string>& CommandInput::GetCommandPath() const {
    return _commandPath;
}

std::string CommandInput::GetCommandPathString() const {
    return boost::algorithm::join(_commandPath, " ");
}

}  // namespace Corvel::AutoCli
