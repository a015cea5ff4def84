#pragma once

#include <memory>

#include "corvel/autocli/CommandSpec.h"
// What the functions of a command take and give: whoever writes one needs all of them.
#include "corvel/callspec/Input.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/Output.h"
#include "corvel/callspec/OutputSpec.h"

namespace Corvel::AutoCli {

/// A command that can be executed: the base of all commands.
///
/// A derived class builds its specifications and does its work in ExecuteInternal().
class CORVEL_EXPORT Command : public CommandSpec {
public:
    ~Command() override;

    /// Runs the command and checks its result; the one entry for callers. With a parameter "help" in
    /// the input it gives the command's help instead.
    ///
    /// A standard exception out of ExecuteInternal() becomes the error message
    ///   "Error on command " + command path + " : " + the exception's text
    /// of the output, with the command's own name when the input is no CommandInput; exceptions of
    /// other kinds pass. An output without error that does not match the declared one gets the
    /// reasons as error messages, and then
    ///   "Implementation error! The output of this command does not match the declared output type,
    ///       see errors above."
    virtual void Execute(const std::shared_ptr<CallSpec::Input>& input,
                         const std::shared_ptr<CallSpec::Output>& output);

    /// The work of the command: sets the output's root object, adds error messages to the output, or
    /// throws. The input has been validated.
    virtual void ExecuteInternal(const std::shared_ptr<CallSpec::Input>& input,
                                 const std::shared_ptr<CallSpec::Output>& output) = 0;

protected:
    Command();
};

}  // namespace Corvel::AutoCli
