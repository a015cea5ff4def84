#pragma once

#include <list>
#include <memory>
#include <string>

#include "corvel/callspec/Input.h"

namespace Corvel::AutoCli {

/// The input of one execution of a command: its parameters, and by which names it was called.
class CORVEL_EXPORT CommandInput : public CallSpec::Input {
public:
    static std::shared_ptr<CommandInput> New();

    CommandInput();
    ~CommandInput() override;

    /// The name under which the program was called, as help shows it.
    void SetDispatcher(const char* dispatcher);
    void SetDispatcher(const std::string& dispatcher);
    const std::string& GetDispatcher() const;

    /// The names from the top of the command tree down to the command.
    void SetCommandPath(const std::list<std::string>& path);
    const std::list<std::string>& GetCommandPath() const;
    /// The same, joined by single blanks.
    std::string GetCommandPathString() const;

private:
    std::string _dispatcher;
    std::list<std::string> _commandPath;
};

}  // namespace Corvel::AutoCli
