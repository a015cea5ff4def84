#include "corvel/autocli/CommandOutput.h"

#include "corvel/metaobj/NullText.h"

namespace Corvel::AutoCli {

std::shared_ptr<CommandOutput> CommandOutput::New() {
    return std::make_shared<CommandOutput>();
}

CommandOutput::CommandOutput() = default;

CommandOutput::~CommandOutput() = default;

void CommandOutput::SetFormattedString(const char* text) {
    _formattedString = MetaObj::TextOrEmpty(text);
}

void CommandOutput::SetFormattedString(const std::string& text) {
    _formattedString = text;
}

const std::string& CommandOutput::GetFormattedString() const {
    return _formattedString;
}

}  // namespace Corvel::AutoCli
