#pragma once

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/platform/Export.h"

namespace Corvel::CallSpec {

class Input;
class Output;

/// What one command accepts: its parameters, in ascending byte order of their long names but for
/// those that stand last, and the names of the contexts that it knows.
///
/// Ownership: shares the declarations of its parameters.
/// Failures:  declaration errors throw CorvelException and leave the object unchanged; problems of a
///            call are told to its Output.
/// Texts:     null, as a C string, counts as empty text.
class CORVEL_EXPORT InputSpec final {
public:
    /// A declaration without parameters and contexts.
    static std::shared_ptr<InputSpec> New();

    InputSpec(const InputSpec&) = delete;
    InputSpec& operator=(const InputSpec&) = delete;
    ~InputSpec();

    /// Puts the parameter in its place. Raises
    ///   "Null parameter passed to InputSpec"  (an empty reference)
    ///   "Parameter name must be at least 2 characters"
    ///   "Found a duplicate paramater specification for parameter named '" + name + "'"
    ///   "Invalid short name specified for --" + name + ". The short name -" + short name
    ///       + " is already used for --" + the other's name
    void AddParameter(const std::shared_ptr<ParameterSpec>& parameter);
    /// The same, but the parameter stands behind all others, whatever they are called and whenever
    /// they are added: the place of the parameter that every command has, "help". A command that has
    /// declared one of this name itself gets the message about duplicates.
    void AddLastParameter(const std::shared_ptr<ParameterSpec>& parameter);
    const std::vector<std::shared_ptr<ParameterSpec>>& GetParameters() const;
    /// @return the parameter of this long name, or an empty reference when there is none.
    std::shared_ptr<ParameterSpec> FindParameter(const std::string& name) const;
    std::shared_ptr<ParameterSpec> FindParameter(const char* name) const;

    /// Does nothing for a name that is there already.
    void SetContextSupported(const std::string& name);
    void SetContextSupported(const char* name);
    bool IsContextSupported(const std::string& name) const;
    bool IsContextSupported(const char* name) const;
    const std::set<std::string>& GetContexts() const;

    /// Is the input complete and are its values accepted? An input that holds "help" always is.
    /// Adds to the output, for each parameter given, in ascending order of names,
    ///   "Unknown parameter : " + name
    ///   the messages of ParameterSpec::Validate
    /// and then, for each declaration,
    ///   "Missing required parameter --" + name
    /// @param input, output  never empty.
    bool Validate(const std::shared_ptr<Input>& input, const std::shared_ptr<Output>& output) const;

private:
    InputSpec();

    void RequireNew(const ParameterSpec* parameter) const;

    std::vector<std::shared_ptr<ParameterSpec>> _parameters;
    std::size_t _sortedCount = 0;  // the others stand behind them for good
    std::set<std::string> _contexts;
};

}  // namespace Corvel::CallSpec
