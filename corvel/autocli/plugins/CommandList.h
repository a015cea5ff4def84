#pragma once

#include <memory>

#include "corvel/autocli/Command.h"
#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

class Namespace;

/// The command that lists every command of a tree, itself included: a list of structures
/// "QuorCliCommand" with the texts "Namespace" (the path of the command's namespace, joined by full
/// stops), "Command" (its name) and "Description". The order is depth first, a namespace's commands
/// and namespaces by name.
///
/// Three optional filters keep only the commands whose namespace path ("namespace-filter"), name
/// ("command-filter") or description ("description-filter") contains a text, letter case mattering.
///
/// Ownership: knows the tree weakly, as the tree owns the command.
/// Failures:  executed when its tree is gone, it raises
///              "The namespaces that this command lists are gone."
class CORVEL_EXPORT CommandList : public Command {
public:
    static std::shared_ptr<CommandList> New(const std::shared_ptr<Namespace>& root);

    ~CommandList() override;

    std::shared_ptr<CallSpec::InputSpec> GetInputSpecInternal() override;
    std::shared_ptr<CallSpec::OutputSpec> GetOutputSpecInternal() override;
    /// A filter that is not given, or empty, keeps every command.
    void ExecuteInternal(const std::shared_ptr<CallSpec::Input>& input,
                         const std::shared_ptr<CallSpec::Output>& output) override;

private:
    explicit CommandList(const std::shared_ptr<Namespace>& root);

    std::weak_ptr<Namespace> _root;
};

}  // namespace Corvel::AutoCli
