#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "corvel/metaobj/CorvelException.h"
#include "corvel/platform/Export.h"

namespace Corvel::CallSpec {

class Output;

/// What a ParameterConstraint restricts. The numbers are part of the binary interface.
enum class ParameterConstraintType : std::uint32_t {
    None = 0,
    IntRange = 1,
    IntEnum = 2,
    StringEnum = 3,
    StringRegex = 4,
};

/// Which values one parameter accepts: a range or a set of integers, a set of texts, or the texts
/// that a regular expression matches. The setters do not look at the type; only the members that
/// belong to it count.
///
/// Failures:  declaration errors throw CorvelException and leave the constraint unchanged; values
///            that are not accepted are told to the Output of the call.
/// Threads:   one at a time, in Validate() too, which keeps the compiled pattern.
/// Texts:     null, as a C string, counts as empty text.
class CORVEL_EXPORT ParameterConstraint final {
public:
    /// An empty constraint: the range from 0 to 0, a set without values, the empty pattern.
    static std::shared_ptr<ParameterConstraint> New(ParameterConstraintType type);

    ParameterConstraint(const ParameterConstraint&) = delete;
    ParameterConstraint& operator=(const ParameterConstraint&) = delete;
    ~ParameterConstraint();

    ParameterConstraintType GetType() const;

    /// Both bounds are included. Raises
    ///   "Invalid values for SetIntRange, constraints must have a min value <= max value"
    void SetIntRange(long min, long max);
    void GetIntRange(long& min, long& max) const;

    /// Raises "Duplicate Value found in ParameterConstraint::AddIntEnum".
    void AddIntEnum(long value);
    /// @return the integers in the order added.
    const std::vector<long>& GetIntEnum() const;

    /// @param description  empty: the value has none.
    /// Raises "Duplicate Value found in ParameterConstraint::AddStringEnum: " + value.
    void AddStringEnum(std::string value, std::string description = {});
    void AddStringEnum(std::string value, const char* description);
    void AddStringEnum(const char* value, std::string description);
    void AddStringEnum(const char* value, const char* description);
    void AddStringEnum(const char* value);
    /// @return the texts in the order added.
    const std::vector<std::string>& GetStringEnum() const;
    /// @return the descriptions of the texts that have one.
    const std::map<std::string, std::string>& GetStringEnumWithDesc() const;

    /// @param pattern  Perl syntax. It is looked at when the first value is checked.
    void SetStringRegex(const std::string& pattern);
    void SetStringRegex(const char* pattern);
    void SetStringRegex(std::string&& pattern);
    const std::string& GetStringRegex() const;

    /// The constraint in words, for help and messages:
    ///   "no constraint", "integer in the range 1-10", "[1, 2]", "[a, b]",
    ///   "a string matching the regular expression [a-z]+"; "unknown" for a type out of range.
    std::string ToString() const;

    /// Is the value accepted? If not, adds one of
    ///   "Invalid data type for parameter '" + name + "'. Expected an Integer"
    ///   "Invalid data constraint for parameter '" + name + "'. Expected " + ToString()
    ///   "Invalid data constraint for parameter '" + name
    ///       + "'. Expected a single value from the set " + ToString()
    ///   the same + " got '" + value + "'"  (texts only)
    ///   "Invalid data constraint for parameter '" + name
    ///       + "'. Value does not match the expected regular expression (" + pattern + ")"
    /// to the output (nothing for a type out of range, which accepts no value). A pattern that is no
    /// regular expression raises boost::regex_error, at every call; one that takes too many steps on
    /// this value does not match it.
    /// @param output  never empty.
    bool Validate(const std::string& value,
                  const std::string& parameterName,
                  const std::shared_ptr<Output>& output) const;
    bool Validate(const std::string& value,
                  const char* parameterName,
                  const std::shared_ptr<Output>& output) const;
    bool Validate(const char* value,
                  const std::string& parameterName,
                  const std::shared_ptr<Output>& output) const;
    bool Validate(const char* value,
                  const char* parameterName,
                  const std::shared_ptr<Output>& output) const;

private:
    struct CompiledPattern;

    explicit ParameterConstraint(ParameterConstraintType type);

    bool ValidateInt(const std::string& value, const std::string& name, Output& output) const;
    bool ValidateString(const std::string& value, const std::string& name, Output& output) const;
    bool ValidateRegex(const std::string& value, const std::string& name, Output& output) const;

    ParameterConstraintType _type;
    long _min = 0;
    long _max = 0;
    std::vector<long> _intValues;
    std::unordered_set<long> _intSet;  // the same, to look one up
    std::vector<std::string> _stringValues;
    std::unordered_set<std::string> _stringSet;  // the same, to look one up
    std::map<std::string, std::string> _stringDescriptions;
    std::string _pattern;
    mutable std::unique_ptr<CompiledPattern> _compiled;  // of _pattern; made when first needed
};

}  // namespace Corvel::CallSpec
