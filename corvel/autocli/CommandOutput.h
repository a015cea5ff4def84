#pragma once

#include <memory>
#include <string>

#include "corvel/callspec/Output.h"

namespace Corvel::AutoCli {

/// The output of one execution of a command, with room for its rendering.
class CORVEL_EXPORT CommandOutput : public CallSpec::Output {
public:
    static std::shared_ptr<CommandOutput> New();

    CommandOutput();
    ~CommandOutput() override;

    /// The text that a formatter made of this output.
    void SetFormattedString(const char* text);
    void SetFormattedString(const std::string& text);
    const std::string& GetFormattedString() const;

private:
    std::string _formattedString;
};

}  // namespace Corvel::AutoCli
