#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "corvel/platform/Export.h"

namespace Corvel::MetaObj {
class MetaObject;
class MetaStruct;
}  // namespace Corvel::MetaObj

namespace Corvel::AutoCli {

class FormatParameters;

/// Renders one field as its ToString() text, changed by two parameters of that field:
///   "printf:" + typeName + "." + fieldName   a printf format with at most one conversion
///   "units:" + typeName + "." + fieldName    a text to append after one blank
///
/// The conversion must fit the value: one of d i o u x X with any length modifier for an Int (64
/// bits, cut to the length as C does) and for a Bool (1 or 0), a plain s for a String; flags, width,
/// precision and %% are free. The formatted text is cut after (length of the format + length of the
/// ToString() text + 64) bytes. A structure or list with a printf parameter is an empty text.
///
/// @return never fails: a null value is "NULL Object", units or not; a format that cannot be used is
///         "Error while handling formatting parameter " + key + ".  Unable to format field: " + the
///         system's text of EINVAL, or of EOVERFLOW when the width, the precision or the whole is
///         longer than INT_MAX. Neither gets units.
CORVEL_EXPORT std::string AutoCli_FormatField(const std::string& typeName,
                                              const std::string& fieldName,
                                              const std::shared_ptr<MetaObj::MetaObject>& value,
                                              const FormatParameters& parameters);

/// Writes the text so that no line goes past column `width`, wrapping at blanks; every line after
/// the first begins with `indent` blanks. A width that is not greater than the indentation, zero for
/// one, turns wrapping off. A word longer than a line is never cut.
///
/// Deliberate: an indentation of 0 still writes one blank; a wrapped line ends in a blank (or in
/// `breakChar` unless that is 0); a first word that does not fit is wrapped, too.
///
/// @param alreadyIndented  the caller has brought the line to column `indent`.
/// @param endLine          end with a newline (with `splitLines` every line, otherwise newlines only
///                         stand between lines).
/// @param splitLines       the text has lines of its own, each to be fitted by itself. A final
///                         newline begins no line, and an empty text has no lines: nothing is
///                         written for it.
CORVEL_EXPORT void AutoCli_FitString(const int& indent,
                                     const int& width,
                                     const std::string& text,
                                     bool alreadyIndented,
                                     std::ostream& out,
                                     bool endLine,
                                     char breakChar,
                                     bool splitLines);

/// The field that a path of field names joined by dots leads to through nested structures.
///
/// Deliberate: a component that names no field is passed over, so the next one is looked up in the
/// same structure ("a.b" finds the field b when there is no a).
///
/// @return what the last component names; null when it names nothing, or when a component before it
///         names something that is no structure.
CORVEL_EXPORT std::shared_ptr<MetaObj::MetaObject> GetSubField(
    const std::shared_ptr<MetaObj::MetaStruct>& structure,
    const std::string& path);

/// @return the field's text; empty when there is no such field or it is no string.
CORVEL_EXPORT std::string GetStringField(const std::shared_ptr<MetaObj::MetaStruct>& structure,
                                         const std::string& name);

/// @return three blanks for each level; none below level 1.
CORVEL_EXPORT std::string GetIndent(int level);

}  // namespace Corvel::AutoCli
