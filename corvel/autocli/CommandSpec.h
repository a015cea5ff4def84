#pragma once

#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "corvel/autocli/NamespaceNode.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/callspec/CallTargetSpec.h"

namespace Corvel::CallSpec {
class Input;
class Output;
}  // namespace Corvel::CallSpec

namespace Corvel::AutoCli {

/// What a command declares: a leaf of the command tree with its input, its output, its examples and
/// the formatting that suits it best.
///
/// A derived class builds its specifications in GetInputSpecInternal() and GetOutputSpecInternal();
/// they are asked for once, when they are first needed, and kept. Every command has one more
/// parameter than it declares, "help", which stands after all others.
///
/// See NamespaceNode for ownership.
/// Failures:  a command has no children: whatever looks for one or adds one raises
///              "... on the command '" + path + "'. Commands cannot have sub-commands or
///                  sub-namespaces."
///            A derived class that builds no specification raises "The command '" + name
///            + "' has no input specification", or "... no output specification".
///
/// The order of the virtual operations is part of the binary interface of plug-ins.
class CORVEL_EXPORT CommandSpec : public CallSpec::CallTargetSpec, public NamespaceNode {
public:
    /// Example arguments, and what they do.
    using Example = std::pair<std::string, std::string>;

    ~CommandSpec() override;

    std::shared_ptr<CallSpec::InputSpec> GetInputSpec() override;
    std::shared_ptr<CallSpec::OutputSpec> GetOutputSpec() override;

    std::shared_ptr<NamespaceNode> GetThis() override;
    /// Always false.
    bool HasNamespaceNode(const std::string& name) const override;
    /// Always raises "Unable to find a namespace or command with the name '" + name
    /// + "' on the command '" + path + "'. Commands cannot have sub-commands or sub-namespaces."
    std::shared_ptr<NamespaceNode> GetNamespaceNode(const std::string& name) const override;
    /// Always raises "Attempt to register a command or namespace '" + name + "' on command '" + path
    /// + "'. Commands cannot have sub-commands or sub-namespaces."
    void RegisterNamespaceNode(std::shared_ptr<NamespaceNode> node, std::string name) override;
    void RegisterNamespaceNode(std::shared_ptr<NamespaceNode> node, const char* name) override;
    /// Always raises what GetNamespaceNode() does, with all names of the path joined by blanks.
    std::shared_ptr<NamespaceNode> ResolveNode(std::list<std::string>& path) override;
    /// Raises "Invalid state for command with name '" + name + "'. No parent node has been set."
    Dispatcher* GetDispatcher() const override;
    void SetParent(std::shared_ptr<NamespaceNode> parent) override;
    std::shared_ptr<NamespaceNode> GetParent() const override;
    NamespaceNodeType GetType() const override;

    /// The parameters that the command declares, without "help".
    virtual std::shared_ptr<CallSpec::InputSpec> GetInputSpecInternal() = 0;
    virtual std::shared_ptr<CallSpec::OutputSpec> GetOutputSpecInternal() = 0;

    using NamespaceNode::GetNamespaceNode;
    using NamespaceNode::HasNamespaceNode;

    /// In the order in which they were added.
    const std::vector<Example>& GetExamples() const;
    void AddExample(const char* arguments, const char* description);
    void AddExample(std::string arguments, std::string description);

    /// The formatting that the command prefers where the user asks for none; no formatter at first.
    void SetDefaultOutputFormatter(const char* formatter);
    void SetDefaultOutputFormatter(std::string formatter);
    void SetDefaultOutputParameter(const char* key, const char* value);
    void SetDefaultOutputParameter(std::string key, std::string value);
    FormatParameters GetDefaultOutputFormatParameters() const;

    /// Makes the help of this command the output's root object, a structure "QuorCliCommandHelp",
    /// and gives the output the type Help. The fields "Dispatcher" and "Path" are there only when
    /// the input is a CommandInput.
    void GenerateHelpOutput(const std::shared_ptr<CallSpec::Input>& input,
                            const std::shared_ptr<CallSpec::Output>& output);

protected:
    CommandSpec();

private:
    std::vector<Example> _examples;
    std::shared_ptr<CallSpec::InputSpec> _inputSpec;
    std::shared_ptr<CallSpec::OutputSpec> _outputSpec;
    FormatParameters _defaultOutputFormatParameters;
    std::weak_ptr<NamespaceNode> _parent;
};

}  // namespace Corvel::AutoCli
