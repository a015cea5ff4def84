#pragma once

#include <map>
#include <string>
#include <vector>

#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

/// How one output is to be formatted: the name of a formatter and the parameters given to it.
///
/// A plain value: a command has its defaults, the user gives a set of his own, and OverrideValues()
/// puts the second over the first. An empty formatter name means that the set chooses none.
///
/// Failures: none. An absent parameter reads as an empty text and as an empty list.
/// Lifetime: everything is copied; a returned reference lives as long as this set is unchanged, the
///           one to an absent parameter's empty text for ever.
class CORVEL_EXPORT FormatParameters {
public:
    void SetFormatter(const char* formatter);
    void SetFormatter(std::string formatter);
    const std::string& GetFormatter() const;

    /// All parameters, in byte-wise order of their keys.
    const std::map<std::string, std::string>& GetParameters() const;

    /// Whether the key was set; a parameter with an empty value is present, too.
    bool HasParameter(const char* key) const;
    bool HasParameter(const std::string& key) const;

    const std::string& GetParameter(const char* key) const;
    const std::string& GetParameter(const std::string& key) const;

    /// The parameter's value, cut at every comma. Pieces keep their blanks, and there is no quoting:
    /// a comma is never part of a piece. Leading and inner empty pieces count, one after a final
    /// comma does not: "a,,b," gives "a", "" and "b"; an empty value gives nothing.
    std::vector<std::string> GetParameterAsList(const char* key) const;
    std::vector<std::string> GetParameterAsList(const std::string& key) const;

    /// Inserts or replaces.
    void SetParameter(const char* key, const char* value);
    void SetParameter(std::string key, std::string value);

    /// Takes over everything that `other` says: its formatter unless that name is empty, and every
    /// parameter it has. Parameters that only this set has stay.
    void OverrideValues(const FormatParameters& other);

private:
    std::string _formatter;
    std::map<std::string, std::string> _parameters;
};

}  // namespace Corvel::AutoCli
