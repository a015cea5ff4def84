#pragma once

#include <iosfwd>
#include <memory>

#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

/// The formatter "table": prints a list of structures as rows and columns. Columns are as wide as
/// their longest cell and two blanks; integers are right-aligned. Bytes count, not characters.
///
/// Parameters, T being the type name of the list's structure (of the row for the last two):
///   "fields:" + T, "fields", "table-columns"   the columns, from the first of these that is
///                    present; else all fields. A dotted path reaches into nested structures.
///   "show-header"    "false" leaves the header out; when empty, "table-header" is asked instead
///   "header-line"    "false" leaves out the line under the header
///   "wrap-last"      "true" wraps the last column (its plain text) to the width of the screen
///   "units:" + T + "." + column, "printf:" + T + "." + column   see AutoCli_FormatField()
///
/// Failures: Format() throws CorvelException, before anything is printed,
///   "Error: Unexpected type for output, formatter, table, expected a List of structs"
///   "Error: Unable to get structure type from list output."   (a list with items has no structure)
/// and returns false, having printed nothing but one line,
///   "Error: Unexpected type, unable to get struct from list"
///   "Error: Unknown field in field list: " + column           (some row has no such field)
/// or, in the middle of the table, "Unknown column " + column when a wrapped field has vanished since.
class CORVEL_EXPORT TableFormatter : public Formatter {
public:
    static std::shared_ptr<TableFormatter> New();
    TableFormatter();
    ~TableFormatter() override;

    bool Format(const std::shared_ptr<CallSpec::Output>& output,
                FormatParameters& parameters,
                DisplayContext& display,
                std::ostream& stream) override;
};

}  // namespace Corvel::AutoCli
