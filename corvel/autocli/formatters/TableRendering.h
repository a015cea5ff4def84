#pragma once

#include <iosfwd>
#include <memory>
#include <vector>

namespace Corvel::MetaObj {
class MetaObject;
class MetaStruct;
}  // namespace Corvel::MetaObj

namespace Corvel::AutoCli {

class FormatParameters;
struct DisplayContext;

/// Writes structures as a table, as TableFormatter describes it; `definition` gives the type name
/// and, unless the parameters choose them, the columns.
///
/// @return false when it stopped at a bad row or column, after a line that says so.
bool WriteTable(const std::vector<std::shared_ptr<MetaObj::MetaObject>>& rows,
                const MetaObj::MetaStruct& definition,
                const FormatParameters& parameters,
                const DisplayContext& display,
                std::ostream& stream);

}  // namespace Corvel::AutoCli
