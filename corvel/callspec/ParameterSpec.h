#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <string>

#include "corvel/callspec/ParameterConstraint.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/platform/Export.h"

namespace Corvel::CallSpec {

class Output;

/// The kind of a parameter. The numbers are part of the binary interface; a list kind is its single
/// kind plus 4.
enum class ParameterType : std::uint32_t {
    String = 0,
    Int = 1,
    Bool = 2,
    Flag = 3,  ///< has no value: it is given or not
    StringList = 4,
    IntList = 5,
    BoolList = 6,
};

/// The declaration of one parameter of a command: its kind and names, and which values it accepts.
///
/// Ownership: shares its constraint.
/// Failures:  declaration errors throw CorvelException and leave the declaration unchanged; values
///            that are not accepted are told to the Output of the call.
/// Lifetime:  changed while a command is declared, only read once the command is registered.
/// Texts:     null, as a C string, counts as empty text.
class CORVEL_EXPORT ParameterSpec final {
public:
    /// A required parameter without short name, description or constraint. Raises
    ///   "Invalid Parameter name '" + name + "' parameter names can only contain lower-case
    ///    alphanumeric characters, numbers and '-'"  (as one line)
    static std::shared_ptr<ParameterSpec> New(const char* name, ParameterType type);
    static std::shared_ptr<ParameterSpec> New(const std::string& name, ParameterType type);
    static std::shared_ptr<ParameterSpec> New(std::string&& name, ParameterType type);

    ParameterSpec(const ParameterSpec&) = delete;
    ParameterSpec& operator=(const ParameterSpec&) = delete;
    ~ParameterSpec();

    /// The long name, written --name on the command line.
    const std::string& GetName() const;
    ParameterType GetType() const;
    ParameterType GetParameterType() const;
    /// True for the three list kinds.
    bool AllowMultiple() const;

    /// Raises "Invalid value for shortName, must be a single character a-z, A-Z or 0-9"; so a short
    /// name, once set, cannot be taken away.
    void SetShortName(const std::string& shortName);
    void SetShortName(const char* shortName);
    /// @return the short name, written -x on the command line; empty when there is none.
    const std::string& GetShortName() const;

    void SetDescription(const std::string& description);
    void SetDescription(const char* description);
    void SetDescription(std::string&& description);
    /// @param expand  puts the constraint in words in place of the first "%REGEX%" and the first
    ///                "%ENUM%", and the described values, one a line, in place of the first
    ///                "%FULLENUM%". Without a constraint nothing is replaced.
    std::string GetDescription(bool expand) const;

    void SetRequired(bool required);
    template <typename T>
    void SetRequired(T* pointer) = delete;
    bool IsRequired() const;

    /// Only for the kind String. Any other raises, even for false,
    ///   "Cannot be set for parameter " + name
    void SetSecret(bool secret);
    template <typename T>
    void SetSecret(T* pointer) = delete;
    /// A secret parameter without a value is prompted for.
    bool IsSecret() const;

    /// Does nothing for an empty reference. Texts take StringEnum and StringRegex, integers IntRange
    /// and IntEnum; anything else raises
    ///   "Invalid constraint specified for parameter " + name + ".  The parameter constraint
    ///    specified is not allowed for a parameter of this type."  (as one line)
    void SetConstraint(const std::shared_ptr<ParameterConstraint>& constraint);
    /// @return an empty reference when there is none.
    std::shared_ptr<ParameterConstraint> GetConstraint() const;

    /// Reads a decimal integer as strtoll does; the whole text must be one. A number out of range
    /// becomes the nearest one in range. `value` is written only on success.
    static bool GetInt(const std::string& text, long& value);
    static bool GetInt(const char* text, long& value);
    /// Reads 1, yes, y, true, True, t, T or 0, no, n, false, False, f, F. `value` is written only
    /// on success.
    static bool GetBool(const std::string& text, bool& value);
    static bool GetBool(const char* text, bool& value);

    /// Are all values accepted? Adds, for those that are not, and in this order,
    ///   "Missing value for parameter " + name                      (no values; the answer is true)
    ///   "Found multiple values for " + name + " this parameter can only accept a single value."
    ///                                                                (does not change the answer)
    ///   "Invalid data '" + value + "' for parameter " + name + " expected type Integer"
    ///   "Invalid data '" + value + "' for parameter " + name
    ///       + " expected one of [1, 0, y, n, true, false, True, False, yes, no, t, f, T, F]"
    ///   "Invalid data '" + value + "' for parameter " + name
    ///       + ".  This parameter is a flag and cannot accept any values. "
    /// and the messages of the constraint to the output.
    /// @param output  never empty.
    bool Validate(const std::list<std::string>& values,
                  const std::shared_ptr<Output>& output) const;

private:
    ParameterSpec(std::string&& name, ParameterType type);

    bool ValidateValue(const std::string& value, const std::shared_ptr<Output>& output) const;

    ParameterType _type;
    std::string _name;
    std::string _shortName;
    std::string _description;
    std::shared_ptr<ParameterConstraint> _constraint;
    bool _required = true;
    bool _secret = false;
};

}  // namespace Corvel::CallSpec
