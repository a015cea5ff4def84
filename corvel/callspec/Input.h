#pragma once

#include <list>
#include <map>
#include <memory>
#include <string>

#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/platform/Export.h"

namespace Corvel::CallSpec {

/// The data of one call: the texts given for each parameter, and the values of contexts.
///
/// Ownership: shares the declaration of the command's input, once it is set.
/// Failures:  asking for a parameter that is not declared, or in a way that does not fit its kind,
///            throws CorvelException; what a user gave never does.
/// Lifetime:  a text returned by reference lives until the input changes.
/// Texts:     null, as a C string, counts as empty text.
class CORVEL_EXPORT Input {
public:
    /// An input without parameters, contexts and declaration.
    static std::shared_ptr<Input> New();

    /// For derived classes, which like every input are made straight into a shared reference.
    Input();
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;
    virtual ~Input();

    /// Appends one value; nothing is checked.
    void AddParameter(const std::string& name, std::string value);
    void AddParameter(const std::string& name, const char* value);
    void AddParameter(const char* name, std::string value);
    void AddParameter(const char* name, const char* value);

    void SetContext(const std::string& name, std::string value);
    void SetContext(const std::string& name, const char* value);
    void SetContext(const char* name, std::string value);
    void SetContext(const char* name, const char* value);
    /// @return empty text when the context is not set.
    const std::string& GetContext(const std::string& name) const;
    const std::string& GetContext(const char* name) const;

    /// Keeps the declaration, and moves the values that stand under a short name behind those of the
    /// long one. An empty reference takes the declaration away.
    void SetInputSpec(const std::shared_ptr<InputSpec>& inputSpec);
    /// @return an empty reference as long as none is set.
    const std::shared_ptr<InputSpec>& GetInputSpec() const;

    const std::map<std::string, std::list<std::string>>& GetParameters() const;
    /// Was the parameter given, with whatever value?
    bool HasParameter(const std::string& name) const;
    bool HasParameter(const char* name) const;
    /// The same, as one asks for a flag.
    bool IsFlagSet(const std::string& name) const;
    bool IsFlagSet(const char* name) const;

    /// Raises "Request for unknown parameter: " + name.
    ParameterType GetParameterType(const std::string& name) const;
    ParameterType GetParameterType(const char* name) const;

    /// @return empty text unless exactly one value is there. Raises
    ///   "Request for unknown parameter: " + name
    ///   "Request for GetParameter on a flag type parameter: " + name
    ///   "Request for GetParameter on a parameter that can have multiple values: " + name
    const std::string& GetParameter(const std::string& name) const;
    const std::string& GetParameter(const char* name) const;
    /// @return -1 for a value that is absent or no integer. Raises as GetParameter does.
    long GetParameterInt(const std::string& name) const;
    long GetParameterInt(const char* name) const;
    /// @return true for "true", "1", "yes", "y", "t", "True" and "T". Raises as GetParameter does.
    bool GetParameterBool(const std::string& name) const;
    bool GetParameterBool(const char* name) const;

    /// Appends the values to `values`; nothing for a name that is not there.
    void GetParameterList(const std::string& name, std::list<std::string>& values) const;
    void GetParameterList(const char* name, std::list<std::string>& values) const;
    /// Values that are no integers are left out.
    void GetParameterIntList(const std::string& name, std::list<long>& values) const;
    void GetParameterIntList(const char* name, std::list<long>& values) const;
    /// Each value as GetParameterBool reads it.
    void GetParameterBoolList(const std::string& name, std::list<bool>& values) const;
    void GetParameterBoolList(const char* name, std::list<bool>& values) const;

    /// The values joined by the separator, whatever character it is.
    /// @param quote  puts one pair of double quotes around the whole.
    std::string GetParameterListAsString(const std::string& name,
                                         char separator,
                                         bool quote = false) const;
    std::string GetParameterListAsString(const char* name,
                                         char separator,
                                         bool quote = false) const;

private:
    const std::list<std::string>& Values(const std::string& name) const;

    std::map<std::string, std::list<std::string>> _values;
    std::map<std::string, std::string> _context;
    std::shared_ptr<InputSpec> _inputSpec;
};

}  // namespace Corvel::CallSpec
